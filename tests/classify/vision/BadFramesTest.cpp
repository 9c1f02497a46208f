#include <random>

#include <gmock/gmock.h>

#include "classify/vision/ModelRequests.h"
#include "classify/vision/VisionClassifier.h"
#include "core/bins/BinRules.h"
#include "core/bins/RoomLabel.h"
#include "core/clips/MediaClip.h"

using namespace larkspan;

namespace {

const VisionClassifier &classifier()
{
    static const VisionClassifier instance = [] {
        auto models = VisionModels::load(LARKSPAN_MODELS);
        return models ? VisionClassifier(std::make_shared<const ModelRequests>(*models))
                      : throw std::runtime_error(models.error().detail);
    }();
    return instance;
}

// A clip whose four frames are all this one, filed by the rules.
MediaClip filed(const QImage &frame)
{
    MediaClip clip{FileUrl("/shoot/clip.mov")};
    const SortOptions options;
    const std::vector frames(4, frame);
    const auto decision = classification(classifier().analyze(frames), clip, options);
    clip.primaryBin = decision.primary;
    clip.extraBins = decision.secondaries;
    clip.confidence = decision.score;
    clip.runnerUp = decision.runnerUp;
    clip.runnerUpScore = decision.runnerUpScore;
    applyReviewFlags(clip, options);
    return clip;
}

QImage even(QSize size, QColor color)
{
    QImage frame(size, QImage::Format_RGB32);
    frame.fill(color);
    return frame;
}

QImage noise(QSize size, unsigned seed)
{
    std::mt19937 numbers(seed);
    QImage frame(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            frame.setPixel(x, y, 0xff000000u | numbers());
        }
    }
    return frame;
}

const std::vector<QSize> Shapes{{448, 252}, {252, 448}, {448, 448}, {448, 1}, {1, 448}};

} // namespace

TEST(BadFrames, BlackWhiteAndAnyOneColourGoToReviewInEveryShape)
{
    const auto expectReview = [](QSize size, QColor color) {
        const auto clip = filed(even(size, color));
        EXPECT_TRUE(clip.needsReview) << size.width() << 'x' << size.height() << ' ' << color.name().toStdString()
                                      << ": " << clip.primaryBin.toStdString();
    };
    for (const auto color : {Qt::gray, Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::yellow, Qt::magenta, Qt::darkRed,
                             Qt::darkGreen, Qt::darkBlue}) {
        expectReview(Shapes.front(), color);
    }
    for (const auto size : Shapes) {
        expectReview(size, Qt::black);
        expectReview(size, Qt::white);
    }
}

TEST(BadFrames, NoiseGoesToReviewInEveryShape)
{
    for (const auto size : Shapes) {
        for (unsigned seed = 1; seed <= 3; ++seed) {
            const auto clip = filed(noise(size, seed));
            EXPECT_TRUE(clip.needsReview)
                << size.width() << 'x' << size.height() << ": " << clip.primaryBin.toStdString();
        }
    }
}

TEST(BadFrames, OfOnePixelGoToReview)
{
    for (const auto color : {Qt::black, Qt::white, Qt::red}) {
        EXPECT_TRUE(filed(even({1, 1}, color)).needsReview);
    }
}
