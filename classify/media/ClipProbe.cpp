#include "classify/media/ClipProbe.h"

#include <cmath>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>

#include "classify/media/CameraTimecode.h"
#include "classify/media/FFmpegLibraries.h"
#include "classify/media/MovieMetadata.h"
#include "classify/media/PictureGeometry.h"

namespace larkspan {

namespace {

struct FrameDuration
{
    std::int64_t value;
    std::int32_t scale;
};

// Seconds; 0 if the file doesn't say.
double durationOf(const AVFormatContext &format)
{
    double seconds = static_cast<double>(format.duration) / AV_TIME_BASE;
    if (format.duration == AV_NOPTS_VALUE || format.duration <= 0) {
        // A movie written in fragments has its lengths in its tracks; newer FFmpeg leaves it at these for every movie.
        seconds = 0.0;
        for (unsigned i = 0; i < format.nb_streams; ++i) {
            const AVStream &stream = *format.streams[i];
            if (stream.duration != AV_NOPTS_VALUE) {
                // Not times a rounded tick: 60060 of 1/30000 would be 2.0020000000000002.
                const AVRational tick = stream.time_base;
                seconds = std::max(seconds, static_cast<double>(stream.duration) * tick.num / tick.den);
            }
        }
    }
    return std::isfinite(seconds) ? seconds : 0.0;
}

// The smallest distance of two samples in the index, in ticks of the track; 0 if there is none.
std::int64_t smallestStep(MediaFile &file, AVStream &stream)
{
    std::int64_t smallest = 0;
    const auto consider = [&smallest](std::int64_t from, std::int64_t to) {
        std::int64_t step = 0;
        if (!__builtin_sub_overflow(to, from, &step) && step > 0 && (smallest == 0 || step < smallest)) {
            smallest = step;
        }
    };
    const int count = ffmpeg().indexEntryCount(&stream);
    std::int64_t first = 0;
    std::int64_t last = 0;
    for (int i = 0; i < count; ++i) {
        const std::int64_t time = ffmpeg().indexEntry(&stream, i)->timestamp;
        if (i == 0) {
            first = time;
        } else {
            consider(last, time);
        }
        last = time;
    }
    // The last sample lasts as long as its table says. Without one it lasts to the end of the track, whose length the
    // header may have rounded.
    std::int64_t rest = 0;
    if (const auto length = file.isFormat("mov") ? lastSampleLength(file, stream.id) : std::nullopt) {
        consider(0, *length);
    } else if (count > 0 && stream.duration != AV_NOPTS_VALUE && !__builtin_sub_overflow(last, first, &rest)) {
        consider(rest, stream.duration);
    }
    return smallest;
}

// The smallest sample duration as the container's index has it, in the track's own scale.
std::optional<FrameDuration> minFrameDuration(MediaFile &file, AVStream &stream)
{
    std::int64_t ticks = 0;
    if (file.isFormat("mov") || file.isFormat("avi")) {
        ticks = smallestStep(file, stream);
    } else if (file.isFormat("mxf")) {
        ticks = 1; // an MXF track counts in frames
    }
    const AVRational tick = stream.time_base;
    if (ticks <= 0 || tick.num <= 0 || tick.den <= 0 || ticks > std::numeric_limits<std::int64_t>::max() / tick.num) {
        return std::nullopt;
    }
    return FrameDuration{ticks * tick.num, tick.den};
}

std::optional<FrameDuration> nominalFrameDuration(const AVStream &stream)
{
    const AVRational rate = stream.avg_frame_rate;
    if (rate.num <= 0 || rate.den <= 0) {
        return std::nullopt;
    }
    return FrameDuration{static_cast<std::int64_t>(std::llround(600.0 / av_q2d(rate))), 600};
}

std::optional<Date> plainDate(const AVFormatContext &format, const char *key)
{
    const AVDictionaryEntry *entry = ffmpeg().dictGet(format.metadata, key, nullptr, 0);
    return entry != nullptr ? parsedDate(QString::fromUtf8(entry->value)) : std::nullopt;
}

// From the dictionary that FFmpeg makes of other containers' metadata.
ClipMetadata plainMetadata(const AVFormatContext &format)
{
    ClipMetadata found;
    // An MXF tells when it was last written, which in a camera is when it was shot.
    for (const char *key : {"creation_time", "date", "modification_date"}) {
        found.creationDate = found.creationDate ? found.creationDate : plainDate(format, key);
    }
    const AVDictionaryEntry *entry = nullptr;
    while ((entry = ffmpeg().dictGet(format.metadata, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr) {
        const std::string_view key = entry->key;
        if ((key == "make" || key == "model") && found.cameraModel.isEmpty()) {
            found.cameraModel = QString::fromUtf8(entry->value).trimmed();
        }
    }
    return found;
}

void readPicture(MediaClip &clip, MediaFile &file, AVStream &stream)
{
    if (const auto geometry = pictureGeometry(file)) {
        clip.naturalSize = geometry->naturalSize;
        clip.displaySize = geometry->displaySize;
    }
    auto frame = minFrameDuration(file, stream);
    if (!frame) {
        frame = nominalFrameDuration(stream);
    }
    if (frame) {
        clip.frameDurationValue = frame->value;
        clip.frameDurationScale = frame->scale;
    }
}

// None for the zero of a clock, which is what a file system has that knows no date.
std::optional<Date> dateOf(const statx_timestamp &time)
{
    const Date date(std::chrono::seconds(time.tv_sec) +
                    std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::nanoseconds(time.tv_nsec)));
    return date == Date{} ? std::nullopt : std::optional(date);
}

} // namespace

ClipPtr probeClip(const FileUrl &url)
{
    return probeClipWithin(url, {});
}

ClipPtr probeClipWithin(const FileUrl &url, const MediaLimits &limits, std::int64_t *bytesRead)
{
    auto clip = std::make_shared<MediaClip>(url);
    ClipMetadata metadata;
    if (const auto file = MediaFile::open(url, MediaFile::Purpose::Probe, limits)) {
        const AVFormatContext &format = *file->format();
        clip->duration = durationOf(format);
        if (AVStream *stream = file->video()) {
            readPicture(*clip, *file, *stream);
        }
        metadata = file->isFormat("mov") ? movieMetadata(*file) : plainMetadata(format);
        clip->cameraModel = metadata.cameraModel;
        clip->timecode = cameraTimecode(*file);
        clip->isTimecodeRead = true;
        if (bytesRead != nullptr) {
            *bytesRead = file->bytesRead();
        }
    }
    clip->creationDate = metadata.creationDate ? *metadata.creationDate : dateFromFileSystem(fileDates(url));
    return clip;
}

std::optional<Timecode> readTimecode(const FileUrl &url)
{
    const auto file = MediaFile::open(url, MediaFile::Purpose::Probe, {});
    return file ? cameraTimecode(*file) : std::nullopt;
}

FileDates fileDates(const FileUrl &url)
{
    struct statx status = {};
    if (statx(AT_FDCWD, url.path().c_str(), AT_STATX_SYNC_AS_STAT, STATX_BTIME | STATX_MTIME, &status) != 0) {
        return {};
    }
    FileDates dates;
    if ((status.stx_mask & STATX_BTIME) != 0) {
        dates.created = dateOf(status.stx_btime);
    }
    if ((status.stx_mask & STATX_MTIME) != 0) {
        dates.modified = dateOf(status.stx_mtime);
    }
    return dates;
}

Date dateFromFileSystem(const FileDates &dates)
{
    // A file's birth can't be set, so that of a copy is the moment of copying; what it was copied from was there
    // before.
    if (dates.created && dates.modified) {
        return std::min(*dates.created, *dates.modified);
    }
    return dates.created.value_or(dates.modified.value_or(distantPast));
}

} // namespace larkspan
