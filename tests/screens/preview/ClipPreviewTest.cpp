// One clip large.
#include <mpv/client.h>

#include "screens/preview/ClipPlayer.h"
#include "tests/screens/ResultsFixture.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *minuteOfTone = "-f lavfi -i color=s=64x36:r=25:d=60 -f lavfi -i sine=d=60 -c:v libx264 -preset "
                                     "ultrafast -pix_fmt yuv420p -c:a aac";

class ClipPreviewTest : public ResultsTest
{
protected:
    void preview(const QString &name)
    {
        engine.setPreviewClip(clip(name));
        ASSERT_TRUE(shows(clip(name)->url.lastPathComponent()));
    }

    [[nodiscard]] QString shownIn(const QString &label) const
    {
        return control(label).property("shownLabel").toString();
    }
};

} // namespace

TEST_F(ClipPreviewTest, AClickOnACardOpensItsPreviewAndDoneClosesIt)
{
    sortAndShowAll({"kitchen 1", "kitchen 2"});
    scene->click(u"kitchen 2"_s);
    EXPECT_EQ(engine.previewClip(), clip(u"kitchen 2"_s));
    EXPECT_TRUE(shows(u"kitchen 2.mov"_s));
    EXPECT_TRUE(shows(u"0.0s · 0 × 0 · 59.94 fps"_s));
    EXPECT_TRUE(shows(u"No second bin"_s));
    scene->click(u"Done"_s);
    EXPECT_FALSE(engine.hasPreview());
}

TEST_F(ClipPreviewTest, ChangingTheBinMovesTheClipInTheGridBehindTheCardThatStaysOpen)
{
    sortAndShowAll({"kitchen 1", "kitchen 2"});
    preview(u"kitchen 2"_s);
    choose(u"Bin"_s, u"Pool"_s);
    EXPECT_EQ(clip(u"kitchen 2"_s)->primaryBin, u"Pool"_s);
    EXPECT_TRUE(waitUntil([&] { return grid()->property("count").toInt() == 1; }));
    EXPECT_EQ(shownIn(u"Bin"_s), u"Pool"_s);
    EXPECT_TRUE(shows(u"kitchen 2.mov"_s));
}

TEST_F(ClipPreviewTest, TheSecondBinIsChosenChangedAndTakenOffAgain)
{
    sortAndShowAll({"kitchen 1"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Office"_s);
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Pool"_s);
    preview(u"kitchen 1"_s);
    EXPECT_EQ(shownIn(u"Second bin"_s), u"Office"_s);
    choose(u"Second bin"_s, u"Garage"_s);
    EXPECT_THAT(clip(u"kitchen 1"_s)->extraBins, ElementsAre(u"Garage"_s)) << "one, whatever it held before";
    choose(u"Second bin"_s, u"No second bin"_s);
    EXPECT_THAT(clip(u"kitchen 1"_s)->extraBins, IsEmpty());
    EXPECT_EQ(shownIn(u"Second bin"_s), u"No second bin"_s);
}

TEST_F(ClipPreviewTest, TheClipsOwnBinIsNoSecondOneAndTheControlSaysSo)
{
    sortAndShowAll({"kitchen 1"});
    preview(u"kitchen 1"_s);
    choose(u"Second bin"_s, u"Kitchen"_s);
    EXPECT_THAT(clip(u"kitchen 1"_s)->extraBins, IsEmpty());
    EXPECT_EQ(shownIn(u"Second bin"_s), u"No second bin"_s);
}

TEST_F(ClipPreviewTest, AClipWithoutAThumbnailShowsThePlainMediaAreaWithThePlayButton)
{
    sortAndShowAll({"dark 1"});
    preview(u"dark 1"_s);
    ASSERT_TRUE(shows(u"Play"_s));
    const QPoint play = middleOf(findShown(scene->root(), u"Play"_s));
    const QImage window = scene->window().grabWindow();
    for (const QPoint &away : {QPoint(-300, 0), QPoint(300, 0), QPoint(0, -180), QPoint(0, 180)}) {
        EXPECT_EQ(window.pixelColor(play + away), QColor(Qt::black)) << away.x() << ' ' << away.y();
    }
}

TEST_F(ClipPreviewTest, ClosingWhileItPlaysStopsTheSoundAtOnce)
{
    std::filesystem::copy_file(sharedMedia("tone.mp4", minuteOfTone), folder / "kitchen 1.mov");
    sortAndShow();
    preview(u"kitchen 1"_s);
    scene->click(u"Play"_s);
    const auto player = [&] { return scene->root()->findChild<ClipPlayer *>(); };
    ASSERT_TRUE(waitUntil([&] { return player() && player()->position() > 0.1; }));
    const ClipPlayer::Handle sound = player()->handle();
    scene->click(u"Done"_s);
    EXPECT_TRUE(waitUntil([&] { return player() == nullptr; }));
    int isIdle = 0;
    EXPECT_TRUE(waitUntil(
        [&] { return mpv_get_property(sound.get(), "core-idle", MPV_FORMAT_FLAG, &isIdle) == 0 && isIdle != 0; }));
}

TEST_F(ClipPreviewTest, SpacePlaysPausesAndGoesOn)
{
    std::filesystem::copy_file(sharedMedia("tone.mp4", minuteOfTone), folder / "kitchen 1.mov");
    sortAndShow();
    preview(u"kitchen 1"_s);
    findShown(scene->root(), u"Play"_s)->forceActiveFocus(); // as an overlay does
    const auto player = [&] { return scene->root()->findChild<ClipPlayer *>(); };
    scene->key(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return player() && player()->position() > 0.1; }));
    scene->key(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([&] { return !player()->isPlaying(); }));
    scene->key(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([&] { return player()->isPlaying(); }));
}

TEST_F(ClipPreviewTest, AClipThatVanishesWhileItPlaysSaysSo)
{
    std::filesystem::copy_file(
        sharedMedia("brief.mp4", "-f lavfi -i color=s=64x36:r=25:d=2 -f lavfi -i sine=d=2 -c:v libx264 -preset "
                                 "ultrafast -pix_fmt yuv420p -c:a aac"),
        folder / "kitchen 1.mov");
    sortAndShow();
    preview(u"kitchen 1"_s);
    scene->click(u"Play"_s);
    const auto player = [&] { return scene->root()->findChild<ClipPlayer *>(); };
    ASSERT_TRUE(waitUntil([&] { return player() && player()->position() > 0.1; }));
    std::filesystem::remove(folder / "kitchen 1.mov");
    EXPECT_TRUE(
        shows(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s));
    scene->click(u"Done"_s);
    EXPECT_FALSE(engine.hasPreview());
    EXPECT_TRUE(shows(u"kitchen 1"_s));
}

TEST_F(ClipPreviewTest, AClipThatIsGoneSaysSoWhenItIsToPlay)
{
    sortAndShowAll({"kitchen 1"});
    std::filesystem::remove(folder / "kitchen 1.mov");
    engine.setPreviewClip(clip(u"kitchen 1"_s));
    scene->click(u"Play"_s);
    EXPECT_TRUE(
        shows(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s));
    engine.closePreview();
    EXPECT_TRUE(goes(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s));
}

TEST_F(ClipPreviewTest, AClipThatIsBrokenSaysSoWhenItIsToPlay)
{
    sortAndShowAll({"kitchen 1"});
    engine.setPreviewClip(clip(u"kitchen 1"_s));
    scene->click(u"Play"_s);
    EXPECT_TRUE(
        shows(u"This clip can't be played. Its file may be damaged, or of a kind that can't be played here."_s));
}
