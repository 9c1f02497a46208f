#pragma once

#include "core/clips/MediaClip.h"

namespace larkspan {

// The stored form of a clip. Identity, print, raw identifiers, thumbnail and destination are not kept.
struct ClipRecord
{
    FileUrl path;
    double duration = 0.0;
    double naturalW = 0.0;
    double naturalH = 0.0;
    double displayW = 0.0;
    double displayH = 0.0;
    std::int64_t frameDurationValue = 1001;
    std::int32_t frameDurationScale = 60000;
    Date creationDate = distantPast;
    QString cameraModel;
    QString primaryBin;
    std::vector<QString> extraBins;
    double confidence = 0.0;
    QString runnerUp;
    double runnerUpScore = 0.0;
    bool needsReview = false;
    QString reviewReason;
    double humanFraction = 0.0;

    static ClipRecord fromClip(const MediaClip &clip);
    // A new clip, with an id of its own.
    ClipPtr toClip() const;

    friend bool operator==(const ClipRecord &, const ClipRecord &) = default;
};

} // namespace larkspan
