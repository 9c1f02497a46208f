#pragma once

#include <span>

#include <QtCore/QString>

#include "output/MediaPaths.h"

namespace larkspan {

// The bins of each clip as comma-separated values (UTF-8, lines end in a carriage return and a line feed), in shooting
// order, under the column names that DaVinci Resolve gives a media pool's metadata: "File Name", "Clip Directory",
// "Duration TC" and "Keywords". "Confidence" is ours, from 0 to 1. A pure function.
[[nodiscard]] QString keywordTable(std::span<const ClipPtr> clips, const MediaPaths &paths = {});

} // namespace larkspan
