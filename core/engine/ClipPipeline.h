#pragma once

#include "core/engine/SortSeams.h"

namespace larkspan {

// Takes one file through probing, sampling, classifying and the bin rules, and hands over the finished clip.
// Runs off the main thread and touches nothing but its arguments. Never fails: a clip without frames goes to review.
// stop: only ends what the classifier waits for; the clip of a stopped sort is dropped by whoever asked for it.
ClipPtr processClip(const FileUrl &url, const FrameClassifier &classifier, const SortOptions &options,
                    const SortSeams &seams, const std::stop_token &stop);

// The longest side of a sampled frame in pixels; classifying needs no more.
inline constexpr double frameMaxDimension = 448.0;

} // namespace larkspan
