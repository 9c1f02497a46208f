#pragma once

#include <optional>

#include "classify/media/MediaFile.h"
#include "core/base/Date.h"
#include "core/clips/MediaClip.h"

namespace larkspan {

// Reads what the header of a file tells: length, sizes, frame rate, date, camera, timecode. Reads little of a large
// file. Never fails: what can't be read keeps its default. Any thread; calls share nothing.
[[nodiscard]] ClipPtr probeClip(const FileUrl &url);

// The same within other limits; bytesRead, if given, gets what was read from the file.
[[nodiscard]] ClipPtr probeClipWithin(const FileUrl &url, const MediaLimits &limits, std::int64_t *bytesRead = nullptr);

// The timecode of the first frame alone; none for a file that can't be read. Any thread.
[[nodiscard]] std::optional<Timecode> readTimecode(const FileUrl &url);

// The dates a file system keeps of a file, as far as it does.
struct FileDates
{
    std::optional<Date> created;
    std::optional<Date> modified;
};

[[nodiscard]] FileDates fileDates(const FileUrl &url);

// The date of a clip whose container has none.
[[nodiscard]] Date dateFromFileSystem(const FileDates &dates);

} // namespace larkspan
