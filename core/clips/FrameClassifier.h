#pragma once

#include <span>
#include <stop_token>

#include <QtGui/QImage>

#include "core/clips/FrameAnalysis.h"

namespace larkspan {

// Turns the sampled frames of one clip into evidence. Does not fail: what can't be read counts for nothing.
// Called from several threads at once on one object, so an implementation holds no mutable state.
class FrameClassifier
{
public:
    virtual ~FrameClassifier() = default;

    // frames: in time order, at most 448 pixels on the long side, upright.
    virtual FrameAnalysis analyze(std::span<const QImage> frames) const = 0;

    // The same, given up early when a stop is asked for: nobody looks at the answer then. For a classifier that waits
    // for others.
    virtual FrameAnalysis analyzeUntilStopped(std::span<const QImage> frames, const std::stop_token & /*stop*/) const
    {
        return analyze(frames);
    }
};

} // namespace larkspan
