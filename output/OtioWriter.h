#pragma once

#include <span>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include "output/MediaPaths.h"

namespace larkspan {

// Writes a sorted shoot as an OpenTimelineIO timeline: one video track with all clips in the order of a tour, a marker
// at each bin's start, and each clip's bins in its metadata. A pure function; the caller lets nobody change the clips
// meanwhile.
class OtioWriter
{
public:
    // The file's text in UTF-8.
    [[nodiscard]] static QByteArray timeline(std::span<const ClipPtr> clips, const QString &name,
                                             const MediaPaths &paths = {});
};

} // namespace larkspan
