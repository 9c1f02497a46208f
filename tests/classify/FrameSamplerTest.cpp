#include "classify/FrameSampler.h"

#include <gmock/gmock.h>

#include "classify/ClipProbe.h"
#include "tests/classify/MediaSamples.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

Frames framesOf(const std::filesystem::path &path, int count = 4, double maxDimension = 448)
{
    return sampleFrames(*probeClip(FileUrl(path)), count, maxDimension);
}

} // namespace

TEST(FrameSampler, AFourSecondClipGivesFourFramesThatFitTheBox)
{
    const auto &file = sharedMedia("four.mp4", picture("320x180", "10", "4") + h264 + "-g 10");
    const Frames frames = framesOf(file, 4, 160);
    ASSERT_THAT(frames, SizeIs(4));
    for (const QImage &frame : frames) {
        EXPECT_EQ(frame.size(), QSize(160, 90));
        EXPECT_EQ(frame.format(), QImage::Format_RGB32);
    }
}
