#pragma once

#include <span>

#include <QtGui/QImage>

#include "core/FrameAnalysis.h"

namespace larkspan {

// Turns the sampled frames of one clip into evidence. Does not fail: what can't be read counts for nothing.
// Called from several threads at once on one object, so an implementation holds no mutable state.
class FrameClassifier
{
public:
    virtual ~FrameClassifier() = default;

    // frames: in time order, at most 448 pixels on the long side, upright.
    virtual FrameAnalysis analyze(std::span<const QImage> frames) const = 0;
};

} // namespace larkspan
