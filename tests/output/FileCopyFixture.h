#pragma once

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "output/FileCopy.h"
#include "tests/support/TempFolder.h"

namespace larkspan::test {

// Returns whether a file is one that a copy is written to before it gets its name.
inline bool isTemporaryFile(int fd)
{
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd)).native().ends_with(".partial");
}

// Copies single files into a folder. The system's calls are real, except where a test says otherwise.
class FileCopyTest : public testing::Test
{
protected:
    tl::expected<FinishedCopy, CopyFault> copy(const std::filesystem::path &source,
                                               Comparison comparison = Comparison::size,
                                               const FileOperations &files = FileOperations::system())
    {
        auto destination = DestinationFolder::open(folder / "copies", files);
        return FileCopier(files).copy(source, *destination, comparison);
    }

    // Returns "copied", "not clean" or the system's message.
    std::string outcomeOf(const std::filesystem::path &source, const FileOperations &files,
                          Comparison comparison = Comparison::size)
    {
        const auto answer = copy(source, comparison, files);
        if (answer) {
            return "copied";
        }
        const auto *const error = std::get_if<std::error_code>(&answer.error());
        return error != nullptr ? error->message() : "not clean";
    }

    const TempFolder folder;
};

} // namespace larkspan::test
