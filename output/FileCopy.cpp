#include "output/FileCopy.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <sys/xattr.h>

#include "output/Sha256.h"

namespace larkspan {

namespace {

constexpr std::size_t pageSize = 4096;                   // what direct writing comes in
constexpr std::size_t holeSize = std::size_t{64} * 1024; // what a hole in the copy comes in

tl::unexpected<CopyFault> fault(std::error_code error)
{
    return tl::unexpected<CopyFault>(error);
}

tl::unexpected<CopyFault> notClean()
{
    return tl::unexpected<CopyFault>(NotClean{});
}

bool isEmpty(std::span<const std::byte> bytes)
{
    // Compares the range with itself, one byte on.
    return bytes.empty() ||
           (bytes[0] == std::byte{0} && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0);
}

// Writes a copy past the page cache where it can: a large file then neither fills the memory nor waits for it.
class Writer
{
public:
    Writer(FileDescriptor fd, bool keepsHoles, std::int64_t size, const FileOperations &files)
        : m_fd(std::move(fd))
        , m_keepsHoles(keepsHoles)
        , m_size(size)
        , m_files(&files)
    {
        if (m_size >= static_cast<std::int64_t>(ChunkPipeline::chunkSize)) {
            enterDirectMode(m_fd.get());
        }
    }

    int fd() const { return m_fd.get(); }

    std::error_code write(const Chunk &chunk)
    {
        if (!m_keepsHoles) {
            return writeRange(chunk.bytes, chunk.offset);
        }
        // Only what was read and found empty is left out: that a file system calls a range a hole proves nothing.
        std::size_t start = 0;
        while (start < chunk.bytes.size()) {
            std::size_t end = start;
            while (end < chunk.bytes.size() && !isEmpty(block(chunk, end))) {
                end += block(chunk, end).size();
            }
            const auto offset = chunk.offset + static_cast<std::int64_t>(start);
            if (const std::error_code error = writeRange(chunk.bytes.subspan(start, end - start), offset)) {
                return error;
            }
            start = end < chunk.bytes.size() ? end + block(chunk, end).size() : end;
        }
        return {};
    }

    // Takes the file to its full length, should it end in a hole.
    std::error_code setLength() const
    {
        return m_keepsHoles && ::ftruncate(fd(), m_size) != 0 ? lastError() : std::error_code();
    }

    // Syncs once, since after a failed sync a second one may well claim success, and closes.
    std::error_code finish()
    {
        if (m_files->sync(fd()) != 0) {
            return lastError();
        }
        return m_files->close(m_fd.release()) != 0 ? lastError() : std::error_code();
    }

private:
    static std::span<const std::byte> block(const Chunk &chunk, std::size_t start)
    {
        return chunk.bytes.subspan(start, std::min(holeSize, chunk.bytes.size() - start));
    }

    std::error_code writeRange(std::span<const std::byte> bytes, std::int64_t offset)
    {
        while (!bytes.empty()) {
            std::size_t size = bytes.size();
            if (isDirect()) {
                size -= size % pageSize;
                if (size == 0 || offset % static_cast<std::int64_t>(pageSize) != 0) {
                    leaveDirectMode(fd()); // the last piece of the file
                    size = bytes.size();
                }
            }
            const ssize_t count = m_files->write(fd(), bytes.data(), size, offset);
            if (count > 0) {
                bytes = bytes.subspan(static_cast<std::size_t>(count));
                offset += count;
            } else if (count < 0 && errno == EINVAL && isDirect()) {
                leaveDirectMode(fd());
            } else if (count == 0 || errno != EINTR) {
                return count == 0 ? std::make_error_code(std::errc::io_error) : lastError();
            }
        }
        return {};
    }

    bool isDirect() const { return (::fcntl(fd(), F_GETFL) & O_DIRECT) != 0; }

    FileDescriptor m_fd;
    bool m_keepsHoles;
    std::int64_t m_size; // bytes
    const FileOperations *m_files;
};

// Attributes are kept where the destination can hold them. They aren't footage: a card reader's file system that knows
// none is no reason to fail.
void copyAttributes(const SourceFile &source, int destination)
{
    std::vector<char> names(static_cast<std::size_t>(std::max<ssize_t>(::flistxattr(source.fd(), nullptr, 0), 0)));
    const ssize_t length = names.empty() ? 0 : ::flistxattr(source.fd(), names.data(), names.size());
    for (ssize_t i = 0; i < length;
         i += static_cast<ssize_t>(std::string_view(&names[static_cast<std::size_t>(i)]).size()) + 1) {
        const char *const name = &names[static_cast<std::size_t>(i)];
        if (std::string_view(name).starts_with("security.") || std::string_view(name).starts_with("trusted.")) {
            continue; // the system's own
        }
        std::vector<char> value(
            static_cast<std::size_t>(std::max<ssize_t>(::fgetxattr(source.fd(), name, nullptr, 0), 0)));
        const ssize_t size = ::fgetxattr(source.fd(), name, value.data(), value.size());
        if (size >= 0) {
            ::fsetxattr(destination, name, value.data(), static_cast<std::size_t>(size), 0);
        }
    }
    ::fchmod(destination, source.status().st_mode & 0777);
    const std::array times{source.status().st_atim, source.status().st_mtim};
    ::futimens(destination, times.data());
}

// Puts the source's bytes into the empty file. The digest, of what was read from the source, only where it is needed.
tl::expected<Sha256::Digest, std::error_code> transfer(const SourceFile &source, Writer &writer, Proof proof,
                                                       ChunkPipeline &pipeline, const FileOperations &files)
{
    const bool cloned = source.size() > 0 && files.clone(writer.fd(), source.fd()) == 0;
    Sha256 hash;
    std::vector<ChunkPipeline::Step> steps;
    if (proof == Proof::bytes) {
        steps.emplace_back([&hash](const Chunk &chunk) {
            hash.update(chunk.bytes);
            return std::error_code();
        });
    }
    if (!cloned) {
        steps.emplace_back([&writer](const Chunk &chunk) { return writer.write(chunk); });
    }
    if (!steps.empty()) {
        const auto read = [&source](std::span<std::byte> buffer, std::int64_t offset) {
            return source.read(buffer, offset);
        };
        if (const std::error_code error = pipeline.run(source.size(), read, steps)) {
            return tl::unexpected(error);
        }
    }
    if (const std::error_code error = cloned ? std::error_code() : writer.setLength()) {
        return tl::unexpected(error);
    }
    return hash.finish();
}

// What the medium holds. The page cache is told to forget the file, which is synced and so can be forgotten, and direct
// reading then passes it by; either is enough, and few file systems have neither. One in memory (tmpfs) is such a one:
// there the memory is the medium. What a drive keeps in a cache of its own is out of anyone's reach.
tl::expected<Sha256::Digest, std::error_code> digestOnMedium(int fd, std::int64_t size, ChunkPipeline &pipeline,
                                                             const FileOperations &files)
{
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    enterDirectMode(fd);
    Sha256 hash;
    const auto read = [&](std::span<std::byte> buffer, std::int64_t offset) {
        return readFully(fd, buffer, offset, files);
    };
    const auto step = [&hash](const Chunk &chunk) {
        hash.update(chunk.bytes);
        return std::error_code();
    };
    if (const std::error_code error = pipeline.run(size, read, {step})) {
        return tl::unexpected(error);
    }
    return hash.finish();
}

} // namespace

bool FinishedCopy::isInPlace() const
{
    struct stat status
    {};
    return ::lstat(destination.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_dev == device &&
           status.st_size == size;
}

tl::expected<FinishedCopy, CopyFault> copyFile(const std::filesystem::path &sourcePath,
                                               const std::filesystem::path &sourceFolder,
                                               DestinationFolder &destination, Proof proof, ChunkPipeline &pipeline,
                                               const FileOperations &files)
{
    const auto source = SourceFile::open(sourcePath, sourceFolder, files);
    if (!source) {
        return source.error() == std::errc::operation_not_permitted ? notClean() : fault(source.error());
    }
    auto temporary = destination.makeTemporary();
    if (!temporary) {
        return fault(temporary.error());
    }
    FileDescriptor writing(
        files.open(destination.fd(), temporary->name().c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!writing) {
        return fault(lastError());
    }
    Writer writer(std::move(writing), source->isSparse(), source->size(), files);
    const auto expected = transfer(*source, writer, proof, pipeline, files);
    if (!expected) {
        return fault(expected.error());
    }
    copyAttributes(*source, writer.fd());
    if (const std::error_code error = writer.finish()) {
        return fault(error);
    }

    struct stat written
    {};
    if (::fstat(temporary->fd(), &written) != 0) {
        return fault(lastError());
    }
    if (written.st_size != source->size()) {
        return notClean();
    }
    if (proof == Proof::bytes) {
        const auto actual = digestOnMedium(temporary->fd(), source->size(), pipeline, files);
        if (!actual) {
            return fault(actual.error());
        }
        if (*actual != *expected) {
            return notClean();
        }
    }
    if (!source->isUnchanged()) {
        return notClean();
    }
    auto placed = destination.place(*temporary, sourcePath.filename().native());
    if (!placed) {
        return fault(placed.error());
    }
    return FinishedCopy{std::move(*placed), source->entry(), written.st_dev, written.st_size};
}

} // namespace larkspan
