#include "classify/media/ClipProbe.h"

#include <gmock/gmock.h>

#include "tests/classify/media/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

// The probe's findings on the picture, to be compared whole.
struct Probed
{
    double duration = 0.0;
    QSizeF naturalSize{0.0, 0.0};
    QSizeF displaySize{0.0, 0.0};
    std::int64_t frameDurationValue = 1001;
    std::int32_t frameDurationScale = 60000;

    friend bool operator==(const Probed &, const Probed &) = default;
};

void PrintTo(const Probed &probed, std::ostream *stream)
{
    *stream << probed.duration << " s, " << probed.naturalSize.width() << "x" << probed.naturalSize.height() << " as "
            << probed.displaySize.width() << "x" << probed.displaySize.height() << ", " << probed.frameDurationValue
            << "/" << probed.frameDurationScale;
}

Probed probed(const std::filesystem::path &path)
{
    const ClipPtr clip = probeClip(FileUrl(path));
    return {clip->duration, clip->naturalSize, clip->displaySize, clip->frameDurationValue, clip->frameDurationScale};
}

// The sizes of a movie of 160 by 90 shown through a transform.
Probed probedThrough(double a, double b, double c, double d)
{
    const TempFolder folder;
    const auto &plain = sharedMedia("transformed.mov", picture("160x90", "25", "0.2") + h264);
    return probed(folder.write("clip.mov", withTransform(bytesOf(plain), a, b, c, d)));
}

Probed small(QSizeF displaySize)
{
    return {0.2, {160, 90}, displaySize, 512, 12800};
}

} // namespace

TEST(ClipProbe, AMinimumFrameDurationOf1001By30000KeepsThoseNumbersExactly)
{
    const auto &file = sharedMedia("plain.mov", picture("160x90", "30000/1001", "2.002") + h264);
    EXPECT_EQ(probed(file), (Probed{2.002, {160, 90}, {160, 90}, 1001, 30000}));
}

TEST(ClipProbe, AFrameDurationIsNeitherReducedNorRounded)
{
    const auto &file = sharedMedia("ticks.mp4", picture("160x90", "30", "1") + h264 + "-video_track_timescale 15360");
    EXPECT_EQ(probed(file), (Probed{1.0, {160, 90}, {160, 90}, 512, 15360}));
}

TEST(ClipProbe, AVariableFrameRateGivesItsSmallestSampleDuration)
{
    const auto &file = sharedMedia("vfr.mp4", "-f lavfi -i testsrc2=s=64x48:r=100:d=2,select='not(mod(n,10))+lt(n,4)' "
                                              "-fps_mode vfr " +
                                                  h264 + "-bf 0 -video_track_timescale 1000");
    EXPECT_EQ(probed(file).frameDurationValue, 10);
    EXPECT_EQ(probed(file).frameDurationScale, 1000);
}

TEST(ClipProbe, ALastSampleThatIsTheShortestCounts)
{
    // Frames at 0 and 0.2 s; the track ends at 0.24 s.
    const auto &file = sharedMedia("shortend.mp4", "-f lavfi -i testsrc2=s=64x48:r=25:d=0.24,select='eq(n,0)+eq(n,5)' "
                                                   "-fps_mode passthrough " +
                                                       h264 + "-bf 0");
    EXPECT_EQ(probed(file).frameDurationValue, 512);
    EXPECT_EQ(probed(file).frameDurationScale, 12800);
}

TEST(ClipProbe, ATrackLengthThatTheHeaderHasRoundedLeavesTheFrameDuration)
{
    const auto &plain = sharedMedia("plain.mov", picture("160x90", "30000/1001", "2.002") + h264);
    const TempFolder folder;
    for (const std::uint32_t length : {60'059u, 60'000u, 60'061u}) { // 60060 are 60 frames of 1001
        const auto file = folder.write("clip.mov", patched(bytesOf(plain), "mdhd", 20, bigEndian32(length)));
        EXPECT_EQ(probed(file).frameDurationValue, 1001) << length;
        EXPECT_EQ(probed(file).frameDurationScale, 30000) << length;
    }
}

TEST(ClipProbe, TheLastSampleIsTheTracksOwn)
{
    const auto &file = sharedMedia("longfirst.mov", picture("160x90", "25", "0.4") + picture("64x48", "50", "0.4") +
                                                        "-map 0 -map 1 " + h264);
    const TempFolder folder;
    const auto rounded = folder.write("clip.mov", patched(bytesOf(file), "mdhd", 20, bigEndian32(5000)));
    EXPECT_EQ(probed(rounded), (Probed{0.4, {160, 90}, {160, 90}, 512, 12800})) << "the other track's last 256";
}

TEST(ClipProbe, AMovieInFragmentsTellsTheSameAsAWholeOne)
{
    const auto &file = sharedMedia("fragments.mp4", picture("160x90", "25", "2") + h264 +
                                                        "-bf 0 -g 10 -movflags frag_keyframe+empty_moov");
    EXPECT_EQ(probed(file), (Probed{2.0, {160, 90}, {160, 90}, 512, 12800}));
}

TEST(ClipProbe, AMovieInFragmentsHasTheLengthOfItsTicksExactly)
{
    const auto &file = sharedMedia("ntsc.mp4", picture("160x90", "30000/1001", "2.002") + h264 +
                                                   "-bf 0 -g 10 -movflags frag_keyframe+empty_moov");
    EXPECT_EQ(probed(file), (Probed{2.002, {160, 90}, {160, 90}, 1001, 30000}));
}

TEST(ClipProbe, AContainerWithoutAnIndexGivesItsAverageRateInSixHundredths)
{
    const auto &file = sharedMedia("stream.mts", picture("160x90", "30000/1001", "2") + h264 + "-f mpegts");
    const Probed clip = probed(file);
    EXPECT_NEAR(clip.duration, 2.0, 0.1);
    EXPECT_EQ(clip, (Probed{clip.duration, {160, 90}, {160, 90}, 20, 600})) << "29.97 frames a second are 20/600";
}

TEST(ClipProbe, ATrackWithoutAnyRateKeepsTheDefault)
{
    // A movie meant for fragments, none of which was written: no sample, no rate.
    const auto &whole = sharedMedia("fragments.mp4", picture("160x90", "25", "2") + h264 +
                                                         "-bf 0 -g 10 -movflags frag_keyframe+empty_moov");
    const std::string content = bytesOf(whole);
    const TempFolder folder;
    const auto file = folder.write("clip.mp4", content.substr(0, content.find("moof") - 4));
    EXPECT_EQ(probed(file), (Probed{0.0, {160, 90}, {160, 90}, 1001, 60000}));
}

TEST(ClipProbe, AnAviAndAnMxfCountInFrames)
{
    const auto &avi = sharedMedia("clip.avi", picture("160x90", "30000/1001", "1.001") + "-c:v mpeg4");
    EXPECT_EQ(probed(avi), (Probed{1.001, {160, 90}, {160, 90}, 1001, 30000}));
    const auto &mxf = sharedMedia("clip.mxf", picture("320x180", "25", "1") + "-c:v mpeg2video -pix_fmt yuv422p");
    EXPECT_EQ(probed(mxf), (Probed{1.0, {320, 180}, {320, 180}, 1, 25}));
}

TEST(ClipProbe, APortraitClipSwapsTheSidesOfItsDisplaySizeOnly)
{
    EXPECT_EQ(probedThrough(0, 1, -1, 0), small({90, 160})) << "turned by 90 degrees";
    EXPECT_EQ(probedThrough(0, -1, 1, 0), small({90, 160})) << "turned by 270 degrees";
    EXPECT_EQ(probedThrough(-1, 0, 0, -1), small({160, 90})) << "upside down";
    EXPECT_EQ(probedThrough(-1, 0, 0, 1), small({160, 90})) << "mirrored";
    EXPECT_EQ(probedThrough(0, 1, 1, 0), small({90, 160})) << "turned and mirrored";
}

TEST(ClipProbe, ATransformMayScaleAndRoundsToWholePixels)
{
    EXPECT_EQ(probedThrough(2, 0, 0, 2), small({320, 180}));
    EXPECT_EQ(probedThrough(2, 0, 0, 1), small({320, 90})) << "a stretch counts once";
    EXPECT_EQ(probedThrough(0.753, 0, 0, 0.755), small({120, 68})) << "120.48 by 67.95";
}

TEST(ClipProbe, ATransformedSizeWithAZeroSideKeepsTheNaturalSize)
{
    EXPECT_EQ(probedThrough(1, 0, 0, 0), small({160, 90}));
    EXPECT_EQ(probedThrough(0, 0, 0, 0), small({160, 90}));
}

TEST(ClipProbe, AnAnamorphicPictureIsWidenedByWhatTheContainerSays)
{
    const auto &file = sharedMedia("wide.mov", picture("144x108", "25", "0.2") + "-vf setsar=4/3 " + h264);
    EXPECT_EQ(probed(file), (Probed{0.2, {192, 108}, {192, 108}, 512, 12800}));
}

TEST(ClipProbe, AnAnamorphicPictureIsWidenedByWhatOnlyTheCodecSays)
{
    const TempFolder folder;
    const Probed expected{0.2, {192, 108}, {192, 108}, 512, 12800};
    const auto &avc = sharedMedia("wide.mov", picture("144x108", "25", "0.2") + "-vf setsar=4/3 " + h264);
    EXPECT_EQ(probed(folder.write("avc.mov", patched(bytesOf(avc), "pasp", 0, "free"))), expected);
    const auto &high = sharedMedia("wide422.mov", picture("144x108", "25", "0.2") +
                                                      "-vf setsar=4/3 -c:v libx264 -pix_fmt yuv422p10le -flags +ildct");
    EXPECT_EQ(probed(folder.write("high.mov", patched(bytesOf(high), "pasp", 0, "free"))), expected);
    const auto &hevc = sharedMedia("widehevc.mov", picture("144x108", "25", "0.2") +
                                                       "-vf setsar=4/3 -c:v libx265 -x265-params log-level=none");
    EXPECT_EQ(probed(folder.write("hevc.mov", patched(bytesOf(hevc), "pasp", 0, "free"))), expected);
}

TEST(ClipProbe, ACroppedPictureCountsWithoutWhatIsCutOff)
{
    // 1080 lines are coded as 1088.
    const auto &file = sharedMedia("cropped.mts", picture("192x1080", "25", "0.2") + h264 + "-f mpegts");
    EXPECT_EQ(probed(file).naturalSize, QSizeF(192, 1080));
}

TEST(ClipProbe, OfTwoVideoTracksTheFirstCounts)
{
    const auto &file = sharedMedia("two.insv", picture("160x90", "25", "0.4") + picture("64x48", "50", "0.4") +
                                                   "-map 1 -map 0 " + h264 + "-f mov");
    EXPECT_EQ(probed(file), (Probed{0.4, {64, 48}, {64, 48}, 256, 12800}));
}

TEST(ClipProbe, SoundAloneHasALengthAndNoPicture)
{
    const auto &file = sharedMedia("sound.mp4", "-f lavfi -i sine=d=1:r=48000 -c:a aac");
    const Probed clip = probed(file);
    EXPECT_NEAR(clip.duration, 1.0, 0.05);
    EXPECT_EQ(clip, (Probed{clip.duration}));
}

TEST(ClipProbe, ACoverPictureIsNoVideoTrack)
{
    const auto &file = sharedMedia("cover.mp4", "-f lavfi -i sine=d=1:r=48000 " + picture("160x90", "1", "1") +
                                                    "-map 0 -map 1 -c:a aac -c:v mjpeg -disposition:v attached_pic");
    const Probed clip = probed(file);
    EXPECT_EQ(clip, (Probed{clip.duration}));
}

TEST(ClipProbe, AnUnknownCodecStillTellsItsSizes)
{
    const TempFolder folder;
    const auto &plain = sharedMedia("transformed.mov", picture("160x90", "25", "0.2") + h264);
    EXPECT_EQ(probed(folder.write("clip.braw", patched(bytesOf(plain), "stsd", 16, "brxq"))), small({160, 90}));
}

TEST(ClipProbe, ALengthOfZeroInTheHeaderIsTakenFromTheTracks)
{
    const TempFolder folder;
    const auto &plain = sharedMedia("transformed.mov", picture("160x90", "25", "0.2") + h264);
    EXPECT_EQ(probed(folder.write("clip.mov", patched(bytesOf(plain), "mvhd", 20, bigEndian32(0)))), small({160, 90}));
}

TEST(ClipProbe, ALargeFileIsNotReadToItsEnd)
{
    const TempFolder folder;
    const auto &plain = sharedMedia("transformed.mov", picture("160x90", "25", "0.2") + h264);
    const auto file = folder.write("clip.mov", bytesOf(plain) + box("free", std::string(8 << 20, '\0')));
    std::int64_t bytesRead = 0;
    const ClipPtr clip = probeClipWithin(FileUrl(file), {}, &bytesRead);
    EXPECT_EQ(clip->naturalSize, QSizeF(160, 90));
    EXPECT_GT(bytesRead, 0);
    EXPECT_LT(bytesRead, 400'000);
}
