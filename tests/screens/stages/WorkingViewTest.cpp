// A sort in progress.
#include "design/LK.h"
#include "screens/stages/ScanTickScheduler.h"
#include "tests/screens/BinnacleViewFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(GatedViewTest, ShowsHowFarTheSortIsAndCancelReturnsToTheLanding)
{
    makeClips({"kitchen 1", "pool 2", "garage 3", "bedroom 4"});
    show();
    engine.sortFolder(shoot);
    EXPECT_TRUE(shows(u"Sorting "_s + shoot.lastPathComponent()));
    gate.open(2);
    EXPECT_TRUE(shows(u"2 of 4"_s));
    EXPECT_TRUE(shows(u"A peek as they land — the full set is browsable when the sort finishes."_s));
    scene->click(u"Cancel"_s);
    gate.open(2);
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    EXPECT_TRUE(shows(u"Drop a shoot folder here"_s));
    EXPECT_THAT(engine.clips(), IsEmpty());
}

TEST_F(GatedViewTest, ThePeekShowsATileForEveryClipThreeBesideEachOtherAndFollowsTheNewest)
{
    for (int i = 0; i < 12; ++i) {
        (void)folder.write("kitchen " + std::to_string(i) + ".mov");
    }
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(shows(u"Sorting "_s + shoot.lastPathComponent()));
    const auto peek = [this] { return findNamed(scene->root(), u"peek"_s); };
    ASSERT_TRUE(waitUntil([&] { return peek() != nullptr; }));
    EXPECT_EQ(QSizeF(peek()->width(), peek()->height()), QSizeF(500, 300));
    gate.open(8);
    ASSERT_TRUE(waitUntil([&] { return engine.done() == 8; }));
    EXPECT_TRUE(waitUntil([&] { return peek()->property("contentHeight").toDouble() == 300; })) << "three rows";
    EXPECT_DOUBLE_EQ(peek()->property("contentY").toDouble(), 0);
    gate.open(2);
    ASSERT_TRUE(waitUntil([&] { return engine.done() == 10; }));
    EXPECT_TRUE(waitUntil([&] { return peek()->property("contentY").toDouble() == 100; })) << "a fourth scrolls";
    gate.open(2);
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

namespace {

// The peek when the last clip has landed, just before the results replace it.
class LastPeekTest : public GatedViewTest
{
protected:
    // Returns the place of each tile, after a sort of so many clips.
    std::vector<QPointF> tilesOfASortOf(int clips)
    {
        for (int i = 0; i < clips; ++i) {
            (void)folder.write("kitchen " + std::to_string(i) + ".mov");
        }
        show();
        std::vector<QPointF> tiles;
        QObject::connect(&engine, &SortEngine::progressChanged, &engine, [&] {
            if (engine.done() == clips) {
                tiles = tilesNow();
            }
        });
        engine.sortFolder(shoot);
        EXPECT_TRUE(waitUntil([&] { return peek() != nullptr; }));
        gate.open(clips);
        EXPECT_TRUE(reaches(engine, StageKind::results));
        return tiles;
    }

    QQuickItem *peek() const { return findNamed(scene->root(), u"peek"_s); }

    std::vector<QPointF> tilesNow() const
    {
        QMetaObject::invokeMethod(peek(), "forceLayout");
        std::vector<QPointF> tiles;
        for (const QQuickItem *tile : peek()->property("contentItem").value<QQuickItem *>()->childItems()) {
            if (tile->property("fileName").isValid()) {
                tiles.push_back(tile->position());
            }
        }
        return tiles;
    }
};

} // namespace

TEST_F(LastPeekTest, ASortOfASingleClipShowsOneTile)
{
    EXPECT_THAT(tilesOfASortOf(1), ElementsAre(QPointF(0, 0)));
}

TEST_F(LastPeekTest, SevenClipsStandInThreeRowsThatFillThePeek)
{
    EXPECT_THAT(tilesOfASortOf(7),
                UnorderedElementsAre(QPointF(0, 0), QPointF(170, 0), QPointF(340, 0), QPointF(0, 100),
                                     QPointF(170, 100), QPointF(340, 100), QPointF(0, 200)));
}

TEST_F(GatedViewTest, TheThemeMayChangeWhileASortRuns)
{
    makeClips({"kitchen 1", "pool 2", "garage 3", "bedroom 4"});
    show();
    engine.sortFolder(shoot);
    gate.open(2);
    ASSERT_TRUE(shows(u"2 of 4"_s));
    const auto corner = [this] { return scene->window().grabWindow().pixelColor(5, 5); };
    EXPECT_EQ(corner(), LKPalette::dark().surfaceWindow);
    LK::instance().setTheme(LK::Theme::Light);
    EXPECT_TRUE(waitUntil([&] { return corner() == LKPalette::light().surfaceWindow; }));
    EXPECT_TRUE(shows(u"2 of 4"_s));
    gate.open(2);
    EXPECT_TRUE(reaches(engine, StageKind::results));
    EXPECT_TRUE(shows(u"bedroom 4"_s));
    LK::instance().setTheme(LK::Theme::Dark);
}

TEST_F(GatedViewTest, TicksFromWhenItAppearsUntilItDisappearsAndAgainWhenItIsBack)
{
    makeClips({"kitchen 1", "pool 2"});
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(shows(u"Cancel"_s));
    const QPointer ticks = scene->root()->findChild<ScanTickScheduler *>();
    EXPECT_TRUE(ticks->isRunning());
    scene->root()->setVisible(false); // as in the launcher
    EXPECT_FALSE(ticks->isRunning());
    scene->root()->setVisible(true);
    EXPECT_TRUE(ticks->isRunning());
    gate.open(2);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_TRUE(waitUntil([&] { return ticks.isNull(); }));
}

TEST_F(GatedViewTest, TheModelCanBeChosenDuringASort)
{
    makeClips({"kitchen 1", "pool 2"});
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(shows(u"Cancel"_s));
    scene->click(u"Cloud AI"_s);
    EXPECT_EQ(engine.modelTier(), ModelTier::cloud);
    gate.open(2);
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(GatedViewTest, ShowsBothPhasesOfACardsCopyWhileItRuns)
{
    makeClips({"kitchen 1"});
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(shows(u"Cancel"_s));
    EXPECT_TRUE(goes(u"Verify"_s));
    engine.copyHistory()->setProgress(CopyProgress{.phase = CopyPhase::verifying,
                                                   .verifies = true,
                                                   .totalBytes = 4'000'000,
                                                   .copiedBytes = 3'000'000,
                                                   .verifiedBytes = 2'000'000,
                                                   .copyingSeconds = 1.0,
                                                   .verifyingSeconds = 1.0});
    EXPECT_TRUE(shows(u"Copy"_s));
    EXPECT_TRUE(shows(u"3 MB of 4 MB · 3 MB/s"_s));
    EXPECT_TRUE(shows(u"Verify"_s));
    EXPECT_TRUE(shows(u"2 MB of 4 MB · 2 MB/s"_s));
    EXPECT_TRUE(shows(u"under a minute"_s));
    engine.copyHistory()->setProgress(std::nullopt);
    EXPECT_TRUE(goes(u"Verify"_s));
    gate.open();
    EXPECT_TRUE(reaches(engine, StageKind::results));
}
