#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <stop_token>
#include <string>
#include <system_error>
#include <vector>

#include <QtCore/QString>
#include <tl/expected.hpp>

namespace larkspan {

// The names in one folder, as bytes, in natural order: "clip 2" before "clip 10".
struct FolderContents
{
    std::vector<std::string> folders;
    std::vector<std::string> files;

    friend bool operator==(const FolderContents &, const FolderContents &) = default;
};

// Returns whether a file of that name is listed.
using FileFilter = std::function<bool(const std::filesystem::path &name)>;

// Lists one folder: its folders, including links to folders, and the files that the filter lets through. Hidden entries
// and packages are left out. Fails when the folder can't be read to its end. Blocks. Stops early, with the entries read
// so far, when the token is requested to.
tl::expected<FolderContents, std::error_code> readFolder(const std::filesystem::path &folder, const FileFilter &shows,
                                                         const std::stop_token &stop);

// Returns the first candidate that is a folder, or "/". Blocks.
std::filesystem::path firstFolder(std::span<const std::filesystem::path> candidates);

// Returns the folder itself if it exists, else its nearest existing ancestor. Blocks.
std::filesystem::path nearestFolder(std::filesystem::path folder);

// Returns the reason that a folder can't be opened, if there is one. Blocks.
std::error_code problemOfOpening(const std::filesystem::path &folder);

// Returns a sentence for people that says why a folder can't be opened.
QString folderProblem(const std::filesystem::path &folder, const std::error_code &error);

} // namespace larkspan
