#pragma once

#include "classify/media/MediaFile.h"
#include "core/clips/MediaClip.h"
#include "core/engine/SortSeams.h"

namespace larkspan {

// Still frames from the centres of equal stretches of the clip, about one a second up to count, in time order.
// Each comes from within half a second of its time, upright, with square pixels, no larger than it was recorded, its
// longest side at most maxDimension pixels; QImage::Format_RGB32, standard dynamic range.
// Never fails: a frame that can't be had is left out. Any thread; calls share nothing.
[[nodiscard]] Frames sampleFrames(const MediaClip &clip, int count, double maxDimension);

// The same within other limits; bytesRead, if given, gets what was read from the file.
[[nodiscard]] Frames sampleFramesWithin(const MediaClip &clip, int count, double maxDimension,
                                        const MediaLimits &limits, std::int64_t *bytesRead = nullptr);

// Returns the times of a clip's samples, in seconds.
[[nodiscard]] std::vector<double> sampleTimes(double duration, int count);

} // namespace larkspan
