#include "screens/preview/ClipPlayer.h"

#include <fstream>

#include <QtTest/QSignalSpy>

#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

constexpr const char *shortClip = "-f lavfi -i testsrc2=s=320x180:r=25:d=1 -f lavfi -i sine=d=1 -c:v libx264 -preset "
                                  "ultrafast -pix_fmt yuv420p -c:a aac";
constexpr const char *longClip = "-f lavfi -i testsrc2=s=320x180:r=25:d=60 -f lavfi -i sine=d=60 -c:v libx264 "
                                 "-preset ultrafast -g 25 -pix_fmt yuv420p -c:a aac";

const fs::path &clip()
{
    return sharedMedia("long.mp4", longClip);
}

// Without a window: the sound alone plays, which needs no display.
class ClipPlayerTest : public testing::Test
{
protected:
    void play(const fs::path &file)
    {
        player.open(FileUrl(file));
        player.pictureReady(false);
    }
    [[nodiscard]] bool advancesTo(double seconds)
    {
        return waitUntil([&] { return player.position() >= seconds; });
    }

    const TempFolder folder;
    ClipPlayer player;
};

constexpr auto goneText = "This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected.";
constexpr auto brokenText =
    "This clip can't be played. Its file may be damaged, or of a kind that can't be played here.";

} // namespace

TEST_F(ClipPlayerTest, PlaysFromTheBeginningAndTellsWhereItIs)
{
    EXPECT_FALSE(player.isPlaying());
    play(clip());
    EXPECT_TRUE(player.isPlaying());
    EXPECT_TRUE(advancesTo(0.2));
    EXPECT_NEAR(player.duration(), 60, 0.1);
    EXPECT_EQ(player.problem(), QString());
}

TEST_F(ClipPlayerTest, StandsStillWhilePausedAndGoesOnFromThere)
{
    play(clip());
    ASSERT_TRUE(advancesTo(0.1));
    player.toggle();
    ASSERT_TRUE(waitUntil([&] { return !player.isPlaying(); }));
    const double stopped = player.position();
    player.toggle();
    ASSERT_TRUE(waitUntil([&] { return player.isPlaying(); }));
    EXPECT_TRUE(advancesTo(stopped + 0.1));
    EXPECT_LT(player.position(), stopped + 30);
}

TEST_F(ClipPlayerTest, GoesToWhereItIsSent)
{
    play(clip());
    ASSERT_TRUE(advancesTo(0.1));
    player.pause();
    player.seek(30, true);
    EXPECT_TRUE(waitUntil([&] { return std::abs(player.position() - 30) < 0.1; }));
}

TEST_F(ClipPlayerTest, StopsAtItsEndAndPlaysFromTheBeginningThen)
{
    play(sharedMedia("short.mp4", shortClip));
    ASSERT_TRUE(waitUntil([&] { return !player.isPlaying(); }));
    EXPECT_GT(player.position(), 0.3);
    player.play();
    EXPECT_TRUE(waitUntil([&] { return player.position() < 0.5; }));
    EXPECT_TRUE(waitUntil([&] { return player.isPlaying(); }));
}

TEST_F(ClipPlayerTest, KeepsItsVolumeWithinItsEnds)
{
    player.setVolume(3);
    EXPECT_DOUBLE_EQ(player.volume(), 1);
    player.setVolume(-1);
    EXPECT_DOUBLE_EQ(player.volume(), 0);
    player.setMuted(true);
    EXPECT_TRUE(player.isMuted());
    play(clip());
    EXPECT_TRUE(advancesTo(0.1));
}

TEST_F(ClipPlayerTest, SaysThatAClipIsGone)
{
    play(folder / "gone.mp4");
    EXPECT_EQ(player.problem().toStdString(), goneText);
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(ClipPlayerTest, SaysThatAClipIsBroken)
{
    play(folder.write("broken.mp4"));
    EXPECT_TRUE(waitUntil([&] { return !player.problem().isEmpty(); }));
    EXPECT_EQ(player.problem().toStdString(), brokenText);
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(ClipPlayerTest, SaysThatAClipIsGoneWhichVanishedWhileItPlayed)
{
    const fs::path file = folder / "vanishes.mp4";
    fs::copy_file(sharedMedia("short.mp4", shortClip), file);
    play(file);
    ASSERT_TRUE(advancesTo(0.1));
    fs::remove(file);
    EXPECT_TRUE(waitUntil([&] { return !player.problem().isEmpty(); }));
    EXPECT_EQ(player.problem().toStdString(), goneText);
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(ClipPlayerTest, EndsQuietlyWhenAClipIsCutOffWhileItPlays)
{
    const fs::path file = folder / "cut.mp4";
    fs::copy_file(clip(), file);
    play(file);
    ASSERT_TRUE(advancesTo(0.1));
    fs::resize_file(file, 1000);
    player.seek(50, true);
    EXPECT_TRUE(waitUntil([&] { return !player.isPlaying(); }));
}

TEST_F(ClipPlayerTest, OpensNothingThatAFileRefersTo)
{
    const fs::path secret = folder / "other.mp4";
    fs::copy_file(sharedMedia("short.mp4", shortClip), secret);
    std::ofstream(folder / "list.mov") << "#EXTM3U\n#EXTINF:1,\n" << secret.string() << "\n";
    std::ofstream(folder / "edl.mov") << "# mpv EDL v0\n" << secret.string() << "\n";
    std::ofstream(folder / "hls.mov") << "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n"
                                      << secret.string() << "\n#EXT-X-ENDLIST\n";
    for (const char *name : {"list.mov", "edl.mov", "hls.mov"}) {
        ClipPlayer other;
        other.open(FileUrl(folder / name));
        other.pictureReady(false);
        EXPECT_TRUE(waitUntil([&] { return !other.problem().isEmpty(); })) << name;
        EXPECT_LE(other.position(), 0) << name;
    }
}

TEST_F(ClipPlayerTest, PlaysAFileWhoseNameWouldMeanSomethingElsewhere)
{
    for (const char *name :
         {"http:\u2215\u2215127.0.0.1.mp4", "--pause.mp4", "\u05d0\u05d1 \U0001F3E0 100%.mp4", "a\xFF.mp4"}) {
        const fs::path file = folder / name;
        fs::copy_file(sharedMedia("short.mp4", shortClip), file);
        ClipPlayer other;
        other.open(FileUrl(file));
        other.pictureReady(false);
        EXPECT_TRUE(waitUntil([&] { return other.position() > 0.1; })) << name;
    }
}

TEST_F(ClipPlayerTest, MayGoAtAnyMoment)
{
    for (int i = 0; i < 5; ++i) {
        ClipPlayer other;
        other.open(FileUrl(clip()));
        if (i > 0) {
            other.pictureReady(false);
        }
        if (i > 1) {
            EXPECT_TRUE(waitUntil([&] { return other.position() > 0.05 * i; }));
        }
    }
}
