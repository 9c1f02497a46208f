#include "classify/media/FrameSampler.h"

#include <thread>

#include <gmock/gmock.h>

#include "classify/media/ClipProbe.h"
#include "tests/classify/media/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

Frames framesOf(const std::filesystem::path &path, int count = 4)
{
    return sampleFrames(*probeClip(FileUrl(path)), count, 448);
}

// When a frame of brightening() was taken, in seconds.
double timeOf(const QImage &frame)
{
    const double luma = 16.0 + qGray(frame.pixel(frame.width() / 2, frame.height() / 2)) * 219.0 / 255.0;
    return (luma - 20.0) / 4.0 / 10.0;
}

// Each frame must come from within half a second of its time; half a frame more for the error of the code.
void expectFramesInTime(const std::filesystem::path &path)
{
    const ClipPtr clip = probeClip(FileUrl(path));
    const Frames frames = sampleFrames(*clip, 4, 448);
    const std::vector<double> times = sampleTimes(clip->duration, 4);
    ASSERT_THAT(frames, SizeIs(times.size()));
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_THAT(timeOf(frames[i]), DoubleNear(times[i], 0.55)) << "frame " << i;
    }
}

struct Recording
{
    const char *file;
    const char *codec;
};

void PrintTo(const Recording &recording, std::ostream *stream)
{
    *stream << recording.file;
}

class FrameTimes : public testing::TestWithParam<Recording>
{};

} // namespace

TEST_P(FrameTimes, LieWithinHalfASecondOfWhatWasAskedFor)
{
    const auto [file, codec] = GetParam();
    expectFramesInTime(sharedMedia(file, brightening("4") + codec));
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, FrameTimes,
    testing::Values(
        Recording{"closed.mp4", "-c:v libx264 -pix_fmt yuv420p -g 10 -bf 2"},
        Recording{"sparse.mp4", "-c:v libx264 -pix_fmt yuv420p -g 250 -bf 3 -sc_threshold 0"},
        Recording{"open.mov", "-c:v libx264 -pix_fmt yuv420p -g 15 -bf 3 -x264-params open-gop=1:scenecut=0"},
        Recording{"refresh.mp4", "-c:v libx264 -pix_fmt yuv420p -g 8 -bf 1 -x264-params intra-refresh=1"},
        Recording{"hevc.mp4", "-c:v libx265 -pix_fmt yuv420p10le -x265-params log-level=none:keyint=20:scenecut=0"},
        Recording{"fragments.mp4", "-c:v libx264 -pix_fmt yuv420p -g 10 -movflags frag_keyframe+empty_moov"},
        Recording{"avchd.mts", "-c:v libx264 -pix_fmt yuv420p -g 5 -bf 2 -f mpegts"},
        Recording{"card.m2ts", "-c:v libx264 -pix_fmt yuv420p -g 10 -bf 2 -mpegts_m2ts_mode 1 -f mpegts"},
        Recording{"sparse.mts", "-c:v libx264 -pix_fmt yuv420p -g 250 -sc_threshold 0 -f mpegts"},
        Recording{"late.m2ts", "-c:v libx264 -pix_fmt yuv420p -g 10 -output_ts_offset 5000 -f mpegts"},
        Recording{"prores.mov", "-c:v prores_ks -profile:v 1"}, Recording{"mjpeg.avi", "-c:v mjpeg -pix_fmt yuvj420p"},
        Recording{"mpeg4.avi", "-c:v mpeg4 -g 12"},
        Recording{"matroska.mp4", "-c:v libx264 -pix_fmt yuv420p -g 10 -f matroska"}),
    [](const auto &recording) {
        std::string name = recording.param.file;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

TEST(FrameSampler, AnMxfRecordingGivesFramesInTime)
{
    // Only the rates of television fit in there: 25 frames a second, brighter with every tenth of one.
    expectFramesInTime(sharedMedia(
        "long.mxf",
        "-f lavfi -i color=black:s=64x48:r=25:d=4,geq=lum=20+40*T:cb=128:cr=128 -c:v mpeg2video -g 12 -bf 2"));
}

TEST(SampleTimes, AClipOfZeroOrUnknownLengthGivesOneSampleAtAQuarterSecond)
{
    EXPECT_THAT(sampleTimes(0.0, 4), ElementsAre(0.25));
    EXPECT_THAT(sampleTimes(-3.0, 4), ElementsAre(0.25));
    EXPECT_THAT(sampleTimes(std::numeric_limits<double>::quiet_NaN(), 4), ElementsAre(0.25));
    EXPECT_THAT(sampleTimes(std::numeric_limits<double>::infinity(), 4), ElementsAre(0.25));
}

TEST(SampleTimes, ACountOfZeroStillGivesOneSample)
{
    EXPECT_THAT(sampleTimes(8.0, 0), ElementsAre(4.0));
    EXPECT_THAT(sampleTimes(8.0, -5), ElementsAre(4.0));
}

TEST(SampleTimes, AClipGetsAboutOneSampleASecondUpToTheCount)
{
    EXPECT_THAT(sampleTimes(4.0, 4), ElementsAre(0.5, 1.5, 2.5, 3.5));
    EXPECT_THAT(sampleTimes(3.1, 4), SizeIs(4));
    EXPECT_THAT(sampleTimes(3.0, 4), ElementsAre(0.5, 1.5, 2.5));
    EXPECT_THAT(sampleTimes(2.2, 4), SizeIs(3));
    EXPECT_THAT(sampleTimes(0.4, 4), ElementsAre(0.25));
    EXPECT_THAT(sampleTimes(80.0, 4), ElementsAre(10.0, 30.0, 50.0, 70.0));
}

TEST(FrameSampler, AFrameFitsTheBoxOnItsLongerSideAndIsNeverEnlarged)
{
    const auto &file = sharedMedia("box.mp4", picture("320x180", "10", "2") + h264);
    const ClipPtr clip = probeClip(FileUrl(file));
    EXPECT_EQ(sampleFrames(*clip, 1, 160).front().size(), QSize(160, 90));
    EXPECT_EQ(sampleFrames(*clip, 1, 1000).front().size(), QSize(320, 180));
    EXPECT_EQ(sampleFrames(*clip, 1, 1).front().size(), QSize(1, 1));
    EXPECT_THAT(sampleFrames(*clip, 1, 0), IsEmpty());
    EXPECT_THAT(sampleFrames(*clip, 1, std::numeric_limits<double>::quiet_NaN()), IsEmpty());
}

TEST(FrameSampler, AClipWhoseLengthIsUnknownGivesOneFrame)
{
    const auto &file = sharedMedia("box.mp4", picture("320x180", "10", "2") + h264);
    EXPECT_THAT(sampleFrames(MediaClip(FileUrl(file)), 4, 448), SizeIs(1));
}

TEST(FrameSampler, AFileThatDoesNotTellItsLengthGivesOneFrame)
{
    const auto &file = sharedMedia("live.mp4", picture("64x48", "10", "3") + h264 + "-g 10 -f matroska -live 1");
    EXPECT_EQ(probeClip(FileUrl(file))->duration, 0.0);
    EXPECT_THAT(framesOf(file), SizeIs(1));
}

TEST(FrameSampler, ASingleFrameIsFoundHoweverLongItIsShown)
{
    const auto &brief = sharedMedia("single.mp4", picture("64x48", "25", "0.04") + h264);
    EXPECT_THAT(framesOf(brief), SizeIs(1));
    const auto &lasting = sharedMedia("lasting.mov", "-f lavfi -i testsrc2=s=64x48:r=1/5:d=5 " + h264);
    EXPECT_EQ(probeClip(FileUrl(lasting))->duration, 5.0);
    EXPECT_THAT(framesOf(lasting), SizeIs(4));
}

TEST(FrameSampler, AFrameThatIsStillShownStandsForALaterTime)
{
    // Frames at 0, 0.1, 0.2 and 3.8 seconds.
    const auto &file =
        sharedMedia("gap.mp4", "-f lavfi -i color=black:s=64x48:r=10:d=4,geq=lum=20+4*N:cb=128:cr=128,"
                               "select='lt(n,3)+eq(n,38)' -fps_mode vfr -c:v libx264 -pix_fmt yuv420p -bf 0");
    const ClipPtr clip = probeClip(FileUrl(file));
    clip->duration = 4.0;
    const Frames frames = sampleFrames(*clip, 4, 448);
    ASSERT_THAT(frames, SizeIs(4));
    EXPECT_THAT(timeOf(frames[1]), DoubleNear(0.2, 0.05));
    EXPECT_THAT(timeOf(frames[3]), DoubleNear(3.8, 0.05));
}

TEST(FrameSampler, OfTwoVideoTracksTheFirstIsSampled)
{
    const auto &file = sharedMedia("two.insv", picture("160x90", "25", "0.4") + picture("64x48", "50", "0.4") +
                                                   "-map 1 -map 0 " + h264 + "-f mov");
    ASSERT_THAT(framesOf(file), SizeIs(1));
    EXPECT_EQ(framesOf(file).front().size(), QSize(64, 48));
}

TEST(FrameSampler, AnInterlacedRecordingGivesWholePictures)
{
    const auto &file =
        sharedMedia("interlaced.mts", "-f lavfi -i color=red:s=320x180:r=50:d=2,interlace=scan=tff "
                                      "-c:v libx264 -pix_fmt yuv420p -flags +ildct+ilme -g 12 -f mpegts");
    const Frames frames = framesOf(file);
    ASSERT_THAT(frames, SizeIs(2));
    for (const QImage &frame : frames) {
        for (int y = 0; y < frame.height(); ++y) {
            ASSERT_GT(qRed(frame.pixel(160, y)), 230) << y;
            ASSERT_LT(qGreen(frame.pixel(160, y)), 40) << y;
        }
    }
}

TEST(FrameSampler, SoundCoversAndUnknownCodecsGiveNoFrames)
{
    EXPECT_THAT(framesOf(sharedMedia("sound.mp4", "-f lavfi -i sine=d=1:r=48000 -c:a aac")), IsEmpty());
    EXPECT_THAT(framesOf(sharedMedia("cover.mp4", "-f lavfi -i sine=d=1:r=48000 " + picture("160x90", "1", "1") +
                                                      "-map 0 -map 1 -c:a aac -c:v mjpeg -disposition:v attached_pic")),
                IsEmpty());
    const TempFolder folder;
    const auto &plain = sharedMedia("box.mp4", picture("320x180", "10", "2") + h264);
    EXPECT_THAT(framesOf(folder.write("clip.braw", patched(bytesOf(plain), "stsd", 16, "brxq"))), IsEmpty());
}

TEST(FrameSampler, ReadsOnlyWhatItsFramesNeed)
{
    // All key frames: a quarter of a megabyte each would be seen.
    const auto &file =
        sharedMedia("noise.mov", "-f lavfi -i testsrc2=s=320x180:r=10:d=12,noise=alls=60:allf=t -c:v mjpeg -q:v 2");
    std::int64_t bytesRead = 0;
    const auto frames = sampleFramesWithin(*probeClip(FileUrl(file)), 4, 448, {}, &bytesRead);
    EXPECT_THAT(frames, SizeIs(4));
    EXPECT_LT(bytesRead, static_cast<std::int64_t>(std::filesystem::file_size(file)) / 8);
}

TEST(FrameSampler, AnyNumberOfClipsMayBeSampledAtTheSameTime)
{
    const std::filesystem::path files[] = {
        sharedMedia("closed.mp4", brightening("4") + "-c:v libx264 -pix_fmt yuv420p -g 10 -bf 2"),
        sharedMedia("prores.mov", brightening("4") + "-c:v prores_ks -profile:v 1"),
        sharedMedia("avchd.mts", brightening("4") + "-c:v libx264 -pix_fmt yuv420p -g 5 -bf 2 -f mpegts")};
    for (const auto &file : files) {
        const Frames alone = framesOf(file);
        ASSERT_THAT(alone, SizeIs(4));
        std::vector<Frames> together(4);
        {
            std::vector<std::jthread> threads;
            for (Frames &frames : together) {
                threads.emplace_back([&frames, &file] { frames = framesOf(file); });
            }
        }
        EXPECT_THAT(together, Each(alone));
    }
}

TEST(FrameSampler, StopsAtItsLimits)
{
    const auto &file = sharedMedia("box.mp4", picture("320x180", "10", "2") + h264);
    const ClipPtr clip = probeClip(FileUrl(file));
    EXPECT_THAT(sampleFramesWithin(*clip, 4, 448, {.time = std::chrono::milliseconds(0)}), IsEmpty());
    EXPECT_THAT(sampleFramesWithin(*clip, 4, 448, {.bytes = 100}), IsEmpty());
    EXPECT_EQ(probeClipWithin(FileUrl(file), {.time = std::chrono::milliseconds(0)})->duration, 0.0);
}
