#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include <QtCore/QByteArray>
#include <tl/expected.hpp>

namespace larkspan {

// Replaces or makes a file in one step: a reader, at any time and after any crash, finds the old content or the new
// one, whole. Takes the path as bytes, so that names which are no UTF-8 work. Blocks until the data is on the
// medium. On failure the old file stays as it was and nothing else is left.
[[nodiscard]] tl::expected<void, std::error_code> writeFileAtomically(const std::filesystem::path &path,
                                                                      std::string_view content);

// Makes the names in a folder last through a crash. A file system that can't is no failure.
void syncFolder(const std::filesystem::path &folder);

// Makes a folder and those above it where they are missing, and syncs each name: a file in a folder whose own name was
// never synced is lost with it when the power fails.
[[nodiscard]] tl::expected<void, std::error_code> makeLastingFolders(const std::filesystem::path &folder);

// The whole of a file. Empty if it can't be read, is no regular file (opening a pipe would wait for a writer), or has
// more bytes than this.
[[nodiscard]] QByteArray contentOf(const std::filesystem::path &file, std::uintmax_t most);

} // namespace larkspan
