#include "core/engine/ClipPipeline.h"

#include "core/bins/BinRules.h"
#include "core/bins/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr int framesPerClip = 4;

} // namespace

ClipPtr processClip(const FileUrl &url, const FrameClassifier &classifier, const SortOptions &options,
                    const SortSeams &seams, const std::stop_token &stop)
{
    ClipPtr clip = seams.probeClip(url);
    const Frames frames = seams.sampleFrames(*clip, framesPerClip, frameMaxDimension);
    if (frames.empty()) {
        clip->primaryBin = unsortedBin();
        clip->needsReview = true;
        clip->reviewReason = u"couldn't read any frames"_s;
        return clip;
    }
    clip->thumbnail = Thumbnail(frames.front());

    const FrameAnalysis analysis = classifier.analyzeUntilStopped(frames, stop);
    clip->featurePrint = analysis.featurePrint;
    clip->rawIdentifiers = analysis.raw;
    clip->humanFraction = analysis.humanFraction;

    const Classification decision = classification(analysis, *clip, options);
    clip->primaryBin = decision.primary;
    clip->confidence = decision.score;
    clip->extraBins = decision.secondaries;
    clip->runnerUp = decision.runnerUp;
    clip->runnerUpScore = decision.runnerUpScore;
    applyReviewFlags(*clip, options);
    return clip;
}

} // namespace larkspan
