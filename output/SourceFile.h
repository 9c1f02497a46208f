#pragma once

#include <filesystem>
#include <set>
#include <span>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <tl/expected.hpp>

#include "core/files/FileDescriptor.h"
#include "output/FileOperations.h"

namespace larkspan {

// The file that a path led to, and its state. The change time, which no program can set back, gives away a file that
// was rewritten under its old size and date.
struct FileIdentity
{
    dev_t device = 0;
    ino_t inode = 0;
    std::int64_t size = 0;
    std::pair<std::int64_t, std::int64_t> modified;
    std::pair<std::int64_t, std::int64_t> changed;

    static FileIdentity of(const struct stat &status);
    // Returns the identity of the path's own entry: of the link, if it is one.
    static tl::expected<FileIdentity, std::error_code> at(const std::filesystem::path &path,
                                                          const FileOperations &files);

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

// A file of the shoot, open for reading. Reads past the page cache where the file system lets it: footage shouldn't
// push everything else out of memory.
class SourceFile
{
public:
    // Opens a regular file, or the one that a link leads to; for anything else the answer is operation_not_permitted.
    static tl::expected<SourceFile, std::error_code> open(const std::filesystem::path &path,
                                                          const FileOperations &files);

    int fd() const { return m_fd.get(); }
    std::int64_t size() const { return m_status.st_size; }
    const struct stat &status() const { return m_status; }
    // Returns the identity of the path's own entry: of the link, if it is one.
    const FileIdentity &entry() const { return m_entry; }
    // Holds ranges that take no room on the disk.
    bool isSparse() const { return m_status.st_blocks * 512 < m_status.st_size; }

    // Returns whether the path still leads to the file that was opened, and the file is as it was.
    bool isUnchanged() const;

    // As many bytes as there are, at most a buffer full, and never past the size at opening.
    tl::expected<std::size_t, std::error_code> read(std::span<std::byte> buffer, std::int64_t offset) const;

private:
    SourceFile() = default;

    const FileOperations *m_files = nullptr;
    std::filesystem::path m_path;
    FileDescriptor m_fd;
    struct stat m_status
    {};
    FileIdentity m_entry;
};

// Fills the buffer from an offset, on a descriptor that may or may not be in direct mode. Leaves that mode where the
// file system turns out not to bear it.
[[nodiscard]] tl::expected<std::size_t, std::error_code> readFully(int fd, std::span<std::byte> buffer,
                                                                   std::int64_t offset, const FileOperations &files);

// Asks for reading and writing past the page cache; false where the file system knows no such thing.
bool enterDirectMode(int fd);
void leaveDirectMode(int fd);

} // namespace larkspan
