#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QtCore/QString>

#include "core/base/Date.h"

namespace larkspan {

class MediaFile;

// The making of a clip, as its container gives it.
struct ClipMetadata
{
    std::optional<Date> creationDate;
    QString cameraModel; // make or model, whichever comes first in the file

    friend bool operator==(const ClipMetadata &, const ClipMetadata &) = default;
};

// Reads it from a movie file's own boxes, since FFmpeg's dictionary loses the order of entries that occur twice.
// No size in the file is trusted; a broken box ends its list.
ClipMetadata movieMetadata(MediaFile &file);

// The length of a track's last sample, in the track's ticks, from its table of sample times; none where the table lists
// no sample, as in a movie of fragments, or can't be read. track: the id that the file gives it.
std::optional<std::int64_t> lastSampleLength(MediaFile &file, int track);

// An ISO 8601 date and time, "T" or a blank between them, with or without a zone (UTC then). None for the zero of a
// clock that was never set: 1904 for movies, 1970 for systems.
std::optional<Date> parsedDate(const QString &text);

} // namespace larkspan
