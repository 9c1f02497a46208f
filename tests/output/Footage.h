#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "output/MediaImporter.h"
#include "tests/support/TempFolder.h"

namespace larkspan::test {

// Bytes that look like no others: the same seed gives the same bytes, and no two seeds share a run of them.
std::string footage(unsigned seed, std::size_t size);

void writeContent(const std::filesystem::path &file, std::string_view content);

// All regular files beneath a folder, by their path from there, hidden ones too, but no proof of a copy.
std::map<std::string, std::string> filesBeneath(const std::filesystem::path &folder);
std::vector<std::string> namesBeneath(const std::filesystem::path &folder);

// Returns a folder in memory if the system has one, for tests in which the number of files matters and not the
// disk, which takes its time to sync each.
std::filesystem::path memoryFolder();

ClipToOrganize clipIn(const std::filesystem::path &file, const QString &bin);

// The failure that names these sources.
ImportError notClean(std::initializer_list<std::filesystem::path> sources);

// The importer with what most tests leave at its usual.
MediaImporter::Copied copyFiles(const std::vector<FileUrl> &urls, const std::filesystem::path &destination,
                                VerifyLevel verify = VerifyLevel::checksum,
                                const FileOperations &files = FileOperations::system());
MediaImporter::Organized copyByBin(const std::vector<ClipToOrganize> &clips, const std::filesystem::path &root,
                                   VerifyLevel verify = VerifyLevel::checksum,
                                   const FileOperations &files = FileOperations::system());
MediaImporter::Organized moveByBin(const std::vector<ClipToOrganize> &clips, const std::filesystem::path &root,
                                   VerifyLevel verify = VerifyLevel::checksum,
                                   const FileOperations &files = FileOperations::system());

} // namespace larkspan::test
