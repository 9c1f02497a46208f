#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "core/files/FileDescriptor.h"
#include "core/files/FileUrl.h"

struct AVFormatContext;
struct AVIOContext;
struct AVStream;

namespace larkspan {

// The cost at which one operation on a media file gives up with what it has.
struct MediaLimits
{
    // A sort goes on after this long, however broken the file or slow the disk.
    std::chrono::milliseconds time{10'000};
    // A file whose index is lost would be read from one end to the other without this.
    std::int64_t bytes = 256LL << 20;
};

// Larger pictures than this are taken for broken headers: no camera makes them, and one would fill the memory.
inline constexpr int largestSide = 16'384;
inline constexpr std::int64_t mostPixels = 12'288LL * 8'192LL;

// One media file, opened for one operation of one thread, with its limits running from then on.
// Reads through a descriptor of its own: only regular files, names of any bytes, never a second file.
class MediaFile
{
public:
    enum class Purpose {
        Probe,  // the index and the metadata as they stand in the file
        Sample, // the first video track alone, on the timeline that a player shows
    };

    // Null if it isn't a regular file, or nothing that is known as media.
    [[nodiscard]] static std::unique_ptr<MediaFile> open(const FileUrl &url, Purpose purpose,
                                                         const MediaLimits &limits);
    ~MediaFile();
    MediaFile(const MediaFile &) = delete;
    MediaFile &operator=(const MediaFile &) = delete;

    AVFormatContext *format() const { return m_format; }
    // The first video track; pictures attached to sound don't count. Null if there is none.
    AVStream *video() const;
    // Returns whether FFmpeg calls the container so; "mov" is the whole family of movie files.
    bool isFormat(const char *name) const;
    // Seconds of the file's own clock at which it starts to play.
    double startSeconds() const;

    std::int64_t bytesRead() const { return m_bytesRead; }
    bool limitsReached() const;
    std::int64_t size() const;
    // Bytes from a place of their own, past FFmpeg. Gives how many could be read.
    std::size_t readAt(std::int64_t offset, char *buffer, std::size_t size);

private:
    MediaFile(FileDescriptor file, const MediaLimits &limits);

    bool openFormat(Purpose purpose);
    int read(std::uint8_t *buffer, int size);
    std::int64_t seek(std::int64_t offset, int whence);

    FileDescriptor m_file;
    MediaLimits m_limits;
    std::chrono::steady_clock::time_point m_deadline;
    std::int64_t m_position = 0;
    std::int64_t m_bytesRead = 0;
    AVIOContext *m_io = nullptr;
    AVFormatContext *m_format = nullptr;
};

} // namespace larkspan
