#pragma once

#include <span>

#include <QtCore/QString>

#include "output/MediaPaths.h"

namespace larkspan {

// Writes a sorted shoot as a Kdenlive project: a folder per bin with its clips, a clip's further bins as tags in a
// colour per bin, and all clips on one video track in the order of a tour, with a guide at each bin's start. The
// project has the clips' most common size and rate. A pure function; the caller lets nobody change the clips meanwhile.
class KdenliveWriter
{
public:
    // The file's text: document version 1.04 of Kdenlive 20.08 to 22.12, which later ones convert as they open it.
    [[nodiscard]] static QString project(std::span<const ClipPtr> clips, const QString &name,
                                         const MediaPaths &paths = {});
};

} // namespace larkspan
