#include <gmock/gmock.h>

#include "classify/media/ClipProbe.h"
#include "tests/classify/media/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

constexpr FrameRate film{.counted = 24, .isOver1001 = true};
constexpr FrameRate ntsc{.counted = 30, .isOver1001 = true};
constexpr FrameRate fast{.counted = 60, .isOver1001 = true};
constexpr FrameRate pal{.counted = 25, .isOver1001 = false};

std::optional<Timecode> probedTimecode(const std::filesystem::path &file)
{
    return probeClip(FileUrl(file))->timecode;
}

// The timecode of a clip that a camera stamped with a time.
std::optional<Timecode> stamped(const std::string &name, const std::string &rate, const std::string &timecode,
                                const std::string &codec = h264)
{
    return probedTimecode(sharedMedia(name, picture("160x90", rate, "0.4") + codec + "-timecode " + timecode));
}

std::string shown(const std::optional<Timecode> &timecode)
{
    return timecode ? timecode->rationalTime(timecode->rate.scale()).toStdString() : "none";
}

} // namespace

namespace larkspan {

void PrintTo(const Timecode &timecode, std::ostream *stream)
{
    *stream << "frame " << timecode.frame << " at " << timecode.rate.framesPerSecond()
            << (timecode.isDropFrame ? " drop" : " non-drop");
}

} // namespace larkspan

TEST(CameraTimecode, AMovieTellsItsTimecodeTrackExactlyAtEveryRate)
{
    EXPECT_EQ(stamped("film.mov", "24000/1001", "01:02:03:04"),
              (Timecode{.frame = 3723 * 24 + 4, .rate = film, .isDropFrame = false}));
    EXPECT_EQ(stamped("pal.mov", "25", "10:00:00:00"), (Timecode{.frame = 900'000, .rate = pal, .isDropFrame = false}));
    EXPECT_EQ(stamped("ndf.mov", "30000/1001", "01:00:00:00"),
              (Timecode{.frame = 108'000, .rate = ntsc, .isDropFrame = false}));
    EXPECT_EQ(stamped("fast.mov", "60000/1001", "14:35:10:59"),
              (Timecode{.frame = 52'510 * 60 + 59, .rate = fast, .isDropFrame = false}));
}

TEST(CameraTimecode, DropFrameIsToldFromNonDropAndItsSkippedNumbersAreNoFrames)
{
    // An hour of drop frame is 107,892 frames, 3.6 ms short of an hour.
    EXPECT_EQ(stamped("df.mov", "30000/1001", "01:00:00;00"),
              (Timecode{.frame = 107'892, .rate = ntsc, .isDropFrame = true}));
    EXPECT_EQ(stamped("df2.mov", "30000/1001", "00:01:00;02"),
              (Timecode{.frame = 1800, .rate = ntsc, .isDropFrame = true}));
    EXPECT_EQ(stamped("df10.mov", "30000/1001", "00:10:00;00"),
              (Timecode{.frame = 17'982, .rate = ntsc, .isDropFrame = true}));
    EXPECT_EQ(stamped("fastdf.mov", "60000/1001", "01:00:00;00"),
              (Timecode{.frame = 215'784, .rate = fast, .isDropFrame = true}));
}

TEST(CameraTimecode, EveryContainerThatCarriesOneIsRead)
{
    const std::string mpeg2 = "-c:v mpeg2video ";
    EXPECT_EQ(shown(stamped("clip.mp4", "25", "10:20:30:05")), "930755/25s");
    EXPECT_EQ(shown(stamped("clip.mxf", "25", "10:20:30:05", mpeg2)), "930755/25s");
    EXPECT_EQ(shown(stamped("drop.mxf", "30000/1001", "01:00:00;00", mpeg2)), "107999892/30000s");
    EXPECT_TRUE(stamped("drop.mxf", "30000/1001", "01:00:00;00", mpeg2)->isDropFrame);
    EXPECT_EQ(shown(probedTimecode(
                  sharedMedia("clip.mkv", picture("160x90", "25", "0.4") + h264 + "-metadata timecode=10:20:30:05"))),
              "930755/25s");
}

TEST(CameraTimecode, AnMpegStreamTellsItInItsFirstGroupOfPictures)
{
    const std::string mpeg2 = "-c:v mpeg2video ";
    EXPECT_EQ(shown(stamped("clip.mpg", "25", "10:20:30:05", mpeg2)), "930755/25s");
    EXPECT_EQ(shown(stamped("clip.ts", "25", "10:20:30:05", mpeg2)), "930755/25s");
    const auto drop = stamped("drop.mpg", "30000/1001", "01:00:00;00", mpeg2);
    EXPECT_EQ(drop, (Timecode{.frame = 107'892, .rate = ntsc, .isDropFrame = true}));
}

TEST(CameraTimecode, ATrackAtHalfThePicturesRateCountsByItsOwn)
{
    const auto &half = sharedMedia("half.mov", picture("160x90", "30000/1001", "0.4") + h264 + "-timecode 01:00:00:00");
    const auto &movie = sharedMedia("doubled.mov", picture("160x90", "60000/1001", "0.4") + "-i " + half.string() +
                                                       " -map 0:v -map 1:d? " + h264 + "-c:d copy");
    const ClipPtr clip = probeClip(FileUrl(movie));
    EXPECT_EQ(clip->frameDurationValue * 60'000, 1001LL * clip->frameDurationScale);
    EXPECT_EQ(clip->timecode, (Timecode{.frame = 108'000, .rate = ntsc, .isDropFrame = false}));
    EXPECT_EQ(clip->timecode->rationalTime(60'000), QStringLiteral("216216000/60000s"));
}

TEST(CameraTimecode, AClipWithoutOneHasNone)
{
    EXPECT_EQ(probedTimecode(sharedMedia("untimed.mov", picture("160x90", "25", "0.4") + h264)), std::nullopt);
    EXPECT_EQ(probedTimecode(sharedMedia("untimed.mkv", picture("160x90", "25", "0.4") + h264)), std::nullopt);
    EXPECT_EQ(probedTimecode("/nowhere.mov"), std::nullopt);
}

TEST(CameraTimecode, AFileThatIsCutOffInItsHeaderNeverStopsTheProbe)
{
    const auto &whole = sharedMedia("cut.mov", picture("160x90", "25", "0.4") + h264 + "-timecode 10:00:00:00");
    const std::string content = bytesOf(whole);
    const TempFolder folder;
    for (std::size_t length = 0; length < content.size(); length += 97) {
        const auto timecode = probedTimecode(folder.write("clip.mov", content.substr(0, length)));
        EXPECT_TRUE(!timecode || timecode->frame <= 900'000) << length;
    }
}
