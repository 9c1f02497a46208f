#include "output/SourceFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

#include "core/files/SystemError.h"
#include "output/ChunkPipeline.h"

namespace larkspan {

namespace {

int openForReading(const std::filesystem::path &path, const FileOperations &files)
{
    // Never waits on a FIFO, and leaves the time of access alone where the file is the user's own.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int fd = files.open(AT_FDCWD, path.c_str(), flags | O_NOATIME, 0);
    return fd >= 0 || errno != EPERM ? fd : files.open(AT_FDCWD, path.c_str(), flags, 0);
}

} // namespace

bool enterDirectMode(int fd)
{
    const int flags = ::fcntl(fd, F_GETFL);
    return flags >= 0 && ::fcntl(fd, F_SETFL, flags | O_DIRECT) == 0;
}

void leaveDirectMode(int fd)
{
    const int flags = ::fcntl(fd, F_GETFL);
    if (flags >= 0) {
        ::fcntl(fd, F_SETFL, flags & ~O_DIRECT);
    }
}

tl::expected<std::size_t, std::error_code> readFully(int fd, std::span<std::byte> buffer, std::int64_t offset,
                                                     const FileOperations &files)
{
    constexpr std::size_t page = 4096;
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count =
            files.read(fd, buffer.data() + filled, buffer.size() - filled, offset + static_cast<std::int64_t>(filled));
        if (count == 0) {
            break;
        }
        if (count > 0) {
            filled += static_cast<std::size_t>(count);
            if (filled % page != 0 && filled < buffer.size()) {
                leaveDirectMode(fd); // the end of the file, or a piece that leaves the next one unaligned
            }
        } else if (errno == EINVAL && (::fcntl(fd, F_GETFL) & O_DIRECT) != 0) {
            leaveDirectMode(fd);
        } else if (errno != EINTR) {
            return tl::unexpected(lastError());
        }
    }
    return filled;
}

FileIdentity FileIdentity::of(const struct stat &status)
{
    return {status.st_dev,
            status.st_ino,
            status.st_size,
            {status.st_mtim.tv_sec, status.st_mtim.tv_nsec},
            {status.st_ctim.tv_sec, status.st_ctim.tv_nsec}};
}

tl::expected<FileIdentity, std::error_code> FileIdentity::at(const std::filesystem::path &path,
                                                             const FileOperations &files)
{
    struct stat status
    {};
    if (files.lstat(path.c_str(), &status) != 0) {
        return tl::unexpected(lastError());
    }
    return of(status);
}

tl::expected<SourceFile, std::error_code> SourceFile::open(const std::filesystem::path &path,
                                                           const FileOperations &files)
{
    const auto entry = FileIdentity::at(path, files);
    if (!entry) {
        return tl::unexpected(entry.error());
    }
    std::error_code error;
    const auto resolved = std::filesystem::canonical(path, error);
    if (error) {
        return tl::unexpected(error);
    }
    // Opening a device or a pipe may do things of its own, so it is asked first.
    if (!std::filesystem::is_regular_file(resolved, error)) {
        return tl::unexpected(std::make_error_code(std::errc::operation_not_permitted));
    }

    SourceFile source;
    source.m_files = &files;
    source.m_path = path;
    source.m_entry = *entry;
    source.m_fd = FileDescriptor(openForReading(resolved, files));
    if (!source.m_fd || ::fstat(source.fd(), &source.m_status) != 0) {
        return tl::unexpected(lastError());
    }
    if (!S_ISREG(source.m_status.st_mode)) {
        return tl::unexpected(std::make_error_code(std::errc::operation_not_permitted));
    }
    if (source.size() >= static_cast<std::int64_t>(ChunkPipeline::chunkSize)) {
        enterDirectMode(source.fd());
    }
    return source;
}

bool SourceFile::isUnchanged() const
{
    struct stat now
    {};
    return ::fstat(fd(), &now) == 0 && FileIdentity::of(now) == FileIdentity::of(m_status) &&
           FileIdentity::at(m_path, *m_files) == m_entry;
}

tl::expected<std::size_t, std::error_code> SourceFile::read(std::span<std::byte> buffer, std::int64_t offset) const
{
    if (offset >= size()) {
        return 0;
    }
    // Asks for a whole buffer even at the end: direct mode reads whole pages only.
    const auto count = readFully(fd(), buffer, offset, *m_files);
    return count.map([&](std::size_t bytes) {
        return std::min(bytes,
                        static_cast<std::size_t>(std::min<std::int64_t>(size() - offset, ChunkPipeline::chunkSize)));
    });
}

} // namespace larkspan
