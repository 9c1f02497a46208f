#include "output/FileCopy.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <future>
#include <string_view>

#include <fcntl.h>
#include <sys/xattr.h>

#include "core/files/SystemError.h"

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
    Writer(int fd, bool keepsHoles, std::int64_t size, const FileOperations &files)
        : m_fd(fd)
        , m_keepsHoles(keepsHoles)
        , m_size(size)
        , m_files(&files)
    {
        if (m_size >= static_cast<std::int64_t>(ChunkPipeline::chunkSize)) {
            enterDirectMode(m_fd);
        }
    }

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
        return m_keepsHoles && m_files->truncate(m_fd, m_size) != 0 ? lastError() : std::error_code();
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
                    leaveDirectMode(m_fd); // the last piece of the file
                    size = bytes.size();
                }
            }
            const ssize_t count = m_files->write(m_fd, bytes.data(), size, offset);
            if (count > 0) {
                bytes = bytes.subspan(static_cast<std::size_t>(count));
                offset += count;
            } else if (count < 0 && errno == EINVAL && isDirect()) {
                leaveDirectMode(m_fd);
            } else if (count == 0 || errno != EINTR) {
                return count == 0 ? std::make_error_code(std::errc::io_error) : lastError();
            }
        }
        return {};
    }

    bool isDirect() const { return (::fcntl(m_fd, F_GETFL) & O_DIRECT) != 0; }

    int m_fd;
    bool m_keepsHoles;
    std::int64_t m_size; // bytes
    const FileOperations *m_files;
};

// Attributes are kept where the destination can hold them. They aren't footage: a card reader's file system that knows
// none is no reason to fail.
void copyAttributes(const SourceFile &source, int destination, const FileOperations &files)
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
    files.chmod(destination, source.status().st_mode & 0777);
    const std::array times{source.status().st_atim, source.status().st_mtim};
    ::futimens(destination, times.data());
}

// Syncs once, since after a failed sync a second one may well claim success. Closing another descriptor of the file
// asks for the errors that some file systems keep for that; the file stays open, and its lock held.
std::error_code makeLasting(int fd, const FileOperations &files)
{
    if (files.sync(fd) != 0) {
        return lastError();
    }
    const int other = ::fcntl(fd, F_DUPFD_CLOEXEC, 0);
    return other < 0 || files.close(other) != 0 ? lastError() : std::error_code();
}

// Digest of the bytes that the medium holds. The page cache is told to forget the file, which has no unwritten bytes
// and so can be forgotten, and direct reading then passes it by; either is enough, and few file systems have neither.
// One in memory (tmpfs) is such a one: there the memory is the medium. A drive's own cache is out of anyone's reach.
tl::expected<Sha256::Digest, std::error_code> digestOnMedium(int fd, std::int64_t size, ChunkPipeline &pipeline,
                                                             const FileOperations &files,
                                                             const std::function<void(const Chunk &)> &passed = {})
{
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    enterDirectMode(fd);
    Sha256 hash;
    const auto read = [&](std::span<std::byte> buffer, std::int64_t offset) {
        return readFully(fd, buffer, offset, files);
    };
    const auto step = [&](const Chunk &chunk) {
        hash.update(chunk.bytes);
        if (passed) {
            passed(chunk);
        }
        return std::error_code();
    };
    if (const std::error_code error = pipeline.run(size, read, {step})) {
        return tl::unexpected(error);
    }
    return hash.finish();
}

} // namespace

bool FinishedCopy::isInPlace(const FileOperations &files) const
{
    struct stat status
    {};
    return files.lstat(destination.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_dev == device &&
           status.st_size == size;
}

// Puts the source's bytes into the empty file.
std::error_code FileCopier::transfer(const SourceFile &source, int destination)
{
    if (source.size() > 0 && m_files->clone(destination, source.fd()) == 0) {
        return {}; // in no time, so that the meter needn't be told before the file is through
    }
    Writer writer(destination, source.isSparse(), source.size(), *m_files);
    const auto read = [&source](std::span<std::byte> buffer, std::int64_t offset) {
        return source.read(buffer, offset);
    };
    const auto write = [&](const Chunk &chunk) {
        const std::error_code error = writer.write(chunk);
        tellMeter(chunk);
        return error;
    };
    const std::error_code error = m_pipeline.run(source.size(), read, {write});
    return error ? error : writer.setLength();
}

void FileCopier::tellMeter(const Chunk &chunk) const
{
    if (m_meter != nullptr) {
        m_meter->advance(static_cast<std::int64_t>(chunk.bytes.size()));
    }
}

// The source is read anew, so that a wrong byte which a reader, a cable or the memory delivered once is noticed.
tl::expected<std::optional<Sha256::Digest>, std::error_code> FileCopier::commonDigest(const SourceFile &source,
                                                                                      int copy)
{
    if (m_meter != nullptr) {
        m_meter->enter(CopyPhase::verifying);
    }
    // Both at once, as they mostly lie on two devices: this takes no longer than the slower of them. A small file isn't
    // worth a thread.
    const bool isLarge = source.size() > static_cast<std::int64_t>(ChunkPipeline::chunkSize);
    auto sourceDigest = std::async(isLarge ? std::launch::async : std::launch::deferred, [&] {
        return digestOnMedium(source.fd(), source.size(), m_sourcePipeline, *m_files);
    });
    const auto copyDigest =
        digestOnMedium(copy, source.size(), m_pipeline, *m_files, [this](const Chunk &chunk) { tellMeter(chunk); });
    const auto expected = sourceDigest.get();
    if (!expected || !copyDigest) {
        return tl::unexpected(expected ? copyDigest.error() : expected.error());
    }
    return *copyDigest == *expected ? std::optional(*copyDigest) : std::nullopt;
}

tl::expected<FinishedCopy, CopyFault> FileCopier::copy(const std::filesystem::path &sourcePath,
                                                       DestinationFolder &destination, Comparison comparison,
                                                       const std::string &name)
{
    const auto source = SourceFile::open(sourcePath, *m_files);
    if (!source) {
        return source.error() == std::errc::operation_not_permitted ? notClean() : fault(source.error());
    }
    auto temporary = destination.makeTemporary();
    if (!temporary) {
        return fault(temporary.error());
    }
    if (const std::error_code error = transfer(*source, temporary->fd())) {
        return fault(error);
    }
    copyAttributes(*source, temporary->fd(), *m_files);
    if (const std::error_code error = makeLasting(temporary->fd(), *m_files)) {
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
    std::error_code unjudged;
    std::optional<Sha256::Digest> digest;
    if (comparison == Comparison::bytes) {
        const auto common = commonDigest(*source, temporary->fd());
        unjudged = common ? std::error_code() : common.error();
        digest = common.value_or(std::nullopt);
        if (common && !digest) {
            return notClean();
        }
    }
    if (!unjudged && !source->isUnchanged()) {
        return notClean();
    }
    auto placed = destination.place(*temporary, name);
    if (unjudged || !placed) {
        return fault(unjudged ? unjudged : placed.error());
    }
    return FinishedCopy{std::move(*placed), source->entry(), written.st_dev, written.st_size, digest};
}

bool FileCopier::isStillEqual(const std::filesystem::path &sourcePath, const FinishedCopy &copy)
{
    const auto source = SourceFile::open(sourcePath, *m_files);
    const FileDescriptor destination(
        m_files->open(AT_FDCWD, copy.destination.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!source || !destination || !copy.isInPlace(*m_files) || source->size() != copy.size) {
        return false;
    }
    return commonDigest(*source, destination.get()).value_or(std::nullopt).has_value() && source->isUnchanged();
}

} // namespace larkspan
