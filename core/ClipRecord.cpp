#include "core/ClipRecord.h"

namespace larkspan {

ClipRecord ClipRecord::fromClip(const MediaClip &clip)
{
    return {
        .path = clip.url,
        .duration = clip.duration,
        .naturalW = clip.naturalSize.width(),
        .naturalH = clip.naturalSize.height(),
        .displayW = clip.displaySize.width(),
        .displayH = clip.displaySize.height(),
        .frameDurationValue = clip.frameDurationValue,
        .frameDurationScale = clip.frameDurationScale,
        .creationDate = clip.creationDate,
        .cameraModel = clip.cameraModel,
        .primaryBin = clip.primaryBin,
        .extraBins = clip.extraBins,
        .confidence = clip.confidence,
        .runnerUp = clip.runnerUp,
        .runnerUpScore = clip.runnerUpScore,
        .needsReview = clip.needsReview,
        .reviewReason = clip.reviewReason,
        .humanFraction = clip.humanFraction,
    };
}

ClipPtr ClipRecord::toClip() const
{
    auto clip = std::make_shared<MediaClip>(path);
    clip->duration = duration;
    clip->naturalSize = {naturalW, naturalH};
    clip->displaySize = {displayW, displayH};
    clip->frameDurationValue = frameDurationValue;
    clip->frameDurationScale = frameDurationScale;
    clip->creationDate = creationDate;
    clip->cameraModel = cameraModel;
    clip->primaryBin = primaryBin;
    clip->extraBins = extraBins;
    clip->confidence = confidence;
    clip->runnerUp = runnerUp;
    clip->runnerUpScore = runnerUpScore;
    clip->needsReview = needsReview;
    clip->reviewReason = reviewReason;
    clip->humanFraction = humanFraction;
    return clip;
}

} // namespace larkspan
