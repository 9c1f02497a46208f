#include "classify/media/MediaFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <span>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "classify/media/FFmpegLibraries.h"

namespace larkspan {

namespace {

constexpr int bufferSize = 32 * 1024;

// Containers of cameras. Playlists and the like, which open other files or the network, are not among them.
constexpr char knownFormats[] = "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,mpegts,mpeg,mpegvideo,avi,mxf,mxf_opatom,asf,"
                                "dv,gxf,flv,ogg,h264,hevc,m4v,mjpeg";

// Nothing if it can't be opened, or isn't a regular file.
FileDescriptor openRegularFile(const char *path)
{
    // Not blocking: a named pipe must answer at once, too.
    FileDescriptor file(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status = {};
    return file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) ? std::move(file) : FileDescriptor();
}

// More than an index or a plane of a picture ever takes; a header of a few bytes may ask for gigabytes.
constexpr std::size_t largestBlock = 256 << 20;

// For the whole process: FFmpeg knows no narrower place for these.
void tameFFmpegOnce()
{
    static std::once_flag once;
    std::call_once(once, [] {
        ffmpeg().logSetLevel(AV_LOG_QUIET);
        ffmpeg().maxAlloc(largestBlock);
    });
}

int refuseOtherFiles(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **)
{
    return AVERROR(EACCES);
}

// Limits the containers that may be read, and chooses what is read of them. Returns the options to open one with, which
// the caller frees.
AVDictionary *prepare(AVFormatContext *format, MediaFile::Purpose purpose)
{
    ffmpeg().optSet(format, "format_whitelist", knownFormats, 0);
    AVDictionary *options = nullptr;
    ffmpeg().dictSet(&options, "ignore_chapters", "1", 0);
    if (purpose == MediaFile::Purpose::Probe) {
        // Edit lists rewrite the index; the track's own sample durations are wanted.
        ffmpeg().dictSet(&options, "advanced_editlist", "0", 0);
    } else {
        ffmpeg().optSetInt(format, "fpsprobesize", 0, 0); // nobody asks a sampler for the frame rate
    }
    return options;
}

void discardAllBut(const AVFormatContext &format, const AVStream *wanted)
{
    for (AVStream *stream : std::span(format.streams, format.nb_streams)) {
        stream->discard = stream == wanted ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
}

// The header of a movie file tells all that is needed; other containers need a look at their first packets.
bool headerSuffices(const MediaFile &file)
{
    const AVStream *video = file.video();
    return file.isFormat("mov") && (video == nullptr || (video->codecpar->width > 0 && video->codecpar->height > 0));
}

} // namespace

MediaFile::MediaFile(FileDescriptor file, const MediaLimits &limits)
    : m_file(std::move(file))
    , m_limits(limits)
    , m_deadline(std::chrono::steady_clock::now() + limits.time)
{}

MediaFile::~MediaFile()
{
    ffmpeg().closeInput(&m_format);
    if (m_io != nullptr) {
        ffmpeg().freep(&m_io->buffer);
        ffmpeg().freeIO(&m_io);
    }
}

std::unique_ptr<MediaFile> MediaFile::open(const FileUrl &url, Purpose purpose, const MediaLimits &limits)
{
    if (!FFmpegLibraries::loaded()) {
        return nullptr;
    }
    tameFFmpegOnce();
    FileDescriptor regular = openRegularFile(url.path().c_str());
    if (!regular) {
        return nullptr;
    }
    std::unique_ptr<MediaFile> file(new MediaFile(std::move(regular), limits));
    return file->openFormat(purpose) ? std::move(file) : nullptr;
}

bool MediaFile::openFormat(Purpose purpose)
{
    auto *buffer = static_cast<unsigned char *>(ffmpeg().malloc(bufferSize));
    m_format = ffmpeg().allocFormat();
    if (buffer == nullptr || m_format == nullptr) {
        ffmpeg().free(buffer);
        return false;
    }
    m_io = ffmpeg().allocIO(
        buffer, bufferSize, 0, this,
        [](void *self, std::uint8_t *to, int size) { return static_cast<MediaFile *>(self)->read(to, size); }, nullptr,
        [](void *self, std::int64_t offset, int whence) {
            return static_cast<MediaFile *>(self)->seek(offset, whence);
        });
    if (m_io == nullptr) {
        ffmpeg().free(buffer);
        return false;
    }
    m_format->pb = m_io;
    m_format->flags |= AVFMT_FLAG_CUSTOM_IO;
    m_format->io_open = refuseOtherFiles;
    m_format->interrupt_callback = {
        [](void *self) { return static_cast<const MediaFile *>(self)->limitsReached() ? 1 : 0; }, this};

    AVDictionary *options = prepare(m_format, purpose);
    const int opened = ffmpeg().openInput(&m_format, nullptr, nullptr, &options);
    ffmpeg().dictFree(&options);
    if (opened < 0) {
        return false;
    }
    if (!headerSuffices(*this)) {
        // A value that it can't find out keeps the header's word, or its default.
        [[maybe_unused]] const int found = ffmpeg().findStreamInfo(m_format, nullptr);
    }
    if (purpose == Purpose::Sample) {
        discardAllBut(*m_format, video());
    }
    return true;
}

AVStream *MediaFile::video() const
{
    constexpr int noTrack = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    const std::span streams(m_format->streams, m_format->nb_streams);
    const auto found = std::find_if(streams.begin(), streams.end(), [](const AVStream *stream) {
        return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && (stream->disposition & noTrack) == 0;
    });
    return found == streams.end() ? nullptr : *found;
}

bool MediaFile::isFormat(const char *name) const
{
    return ffmpeg().matchName(name, m_format->iformat->name) != 0;
}

double MediaFile::startSeconds() const
{
    // A movie's clock starts at zero by definition, even where its first frame comes later.
    const bool hasOwnStart = !isFormat("mov") && m_format->start_time != AV_NOPTS_VALUE;
    return hasOwnStart ? static_cast<double>(m_format->start_time) / AV_TIME_BASE : 0.0;
}

bool MediaFile::limitsReached() const
{
    return m_bytesRead >= m_limits.bytes || std::chrono::steady_clock::now() >= m_deadline;
}

std::int64_t MediaFile::size() const
{
    struct stat status = {};
    return fstat(m_file.get(), &status) == 0 ? status.st_size : 0;
}

std::size_t MediaFile::readAt(std::int64_t offset, char *buffer, std::size_t size)
{
    std::size_t done = 0;
    while (done < size && !limitsReached()) {
        const ssize_t count = pread(m_file.get(), buffer + done, size - done, offset + static_cast<off_t>(done));
        if (count == 0 || (count < 0 && errno != EINTR)) {
            break;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    m_bytesRead += static_cast<std::int64_t>(done);
    return done;
}

// FFmpeg's reading: an error, or at least one byte.
int MediaFile::read(std::uint8_t *buffer, int size)
{
    if (limitsReached()) {
        return AVERROR_EXIT;
    }
    ssize_t count = 0;
    do {
        count = pread(m_file.get(), buffer, static_cast<std::size_t>(size), m_position);
    } while (count < 0 && errno == EINTR);
    if (count <= 0) {
        return count < 0 ? AVERROR(errno) : AVERROR_EOF;
    }
    m_position += count;
    m_bytesRead += count;
    return static_cast<int>(count);
}

std::int64_t MediaFile::seek(std::int64_t offset, int whence)
{
    std::int64_t base = 0;
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return size();
    case SEEK_SET:
        break;
    case SEEK_CUR:
        base = m_position;
        break;
    case SEEK_END:
        base = size();
        break;
    default:
        return AVERROR(EINVAL);
    }
    std::int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0) {
        return AVERROR(EINVAL);
    }
    m_position = target;
    return target;
}

} // namespace larkspan
