// The bins and the grid of the chosen one.
#include <functional>

#include "tests/screens/ResultsFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::SizeIs;

TEST_F(ResultsTest, ACardOfItsExtraBinOpensTheSameClip)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Pool"_s);
    engine.setSelectedBin(u"Pool"_s);
    scene->click(u"kitchen 1"_s);
    EXPECT_EQ(engine.previewClip(), clip(u"kitchen 1"_s));
}

TEST_F(ResultsTest, TheExtraBinStandsOnTheCardItsFirstEntryOnly)
{
    sortAndShowAll({"kitchen 1"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Garage"_s);
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Dining Room"_s);
    EXPECT_TRUE(shows(u"Garage"_s));
    const QQuickItem *card = findShown(grid(), u"kitchen 1"_s);
    EXPECT_NE(findShown(grid(), u"Garage"_s), nullptr);
    EXPECT_EQ(findShown(grid(), u"Dining Room"_s), nullptr);
    EXPECT_NE(card, nullptr);
}

TEST_F(ResultsTest, MoveShowsOnlyWhileThePointerIsOverTheCardAndMovesTheClip)
{
    sortAndShowAll({"kitchen 1", "kitchen 2"});
    ASSERT_TRUE(shows(u"kitchen 1"_s));
    EXPECT_TRUE(goes(u"Move"_s));
    hover(findShown(grid(), u"kitchen 1"_s));
    ASSERT_TRUE(shows(u"Move"_s));
    scene->click(u"Move"_s);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    scene->click(u"Bathroom"_s);
    EXPECT_EQ(clip(u"kitchen 1"_s)->primaryBin, u"Bathroom"_s);
    QTest::mouseMove(&scene->window(), QPoint(100, 500));
    EXPECT_TRUE(goes(u"Move"_s));
}

TEST_F(ResultsTest, TheContextMenuOpensMovesTagsAndReveals)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    rightClick(u"kitchen 1"_s);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Reveal in Finder"_s) != nullptr; }));
    EXPECT_NE(inWindow(u"Move to"_s), nullptr);
    EXPECT_NE(inWindow(u"Also Tag"_s), nullptr);
    scene->click(u"Reveal in Finder"_s);
    EXPECT_THAT(revealed, ElementsAre(FileUrl(folder / "kitchen 1.mov")));
    rightClick(u"kitchen 1"_s);
    scene->click(u"Open Preview"_s);
    EXPECT_EQ(engine.previewClip(), clip(u"kitchen 1"_s));
}

TEST_F(ResultsTest, MoveToOfTheContextMenuMarksTheClipsBinAndMovesItToAnother)
{
    sortAndShowAll({"kitchen 1", "kitchen 2"});
    rightClick(u"kitchen 1"_s);
    scene->click(u"Move to"_s);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"✓ Kitchen"_s) != nullptr; }));
    EXPECT_EQ(inWindow(u"✓ Bathroom"_s), nullptr);
    scene->click(u"Bathroom"_s);
    EXPECT_EQ(clip(u"kitchen 1"_s)->primaryBin, u"Bathroom"_s);
    EXPECT_TRUE(waitUntil([&] { return inWindow(u"Move to"_s) == nullptr; }));
    EXPECT_TRUE(goes(u"kitchen 1"_s));
}

TEST_F(ResultsTest, AlsoTagOfTheContextMenuMarksEveryExtraBinAndTakesOneOffAgain)
{
    sortAndShowAll({"kitchen 1", "kitchen 2"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Garage"_s);
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Pool"_s);
    rightClick(u"kitchen 1"_s);
    scene->click(u"Also Tag"_s);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"✓ Garage"_s) != nullptr; }));
    EXPECT_NE(inWindow(u"✓ Pool"_s), nullptr);
    EXPECT_EQ(inWindow(u"✓ Kitchen"_s), nullptr);
    scene->click(u"✓ Garage"_s);
    EXPECT_THAT(clip(u"kitchen 1"_s)->extraBins, ElementsAre(u"Pool"_s));
}

TEST_F(ResultsTest, AMenuGoesWithTheCardThatItIsFor)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    rightClick(u"kitchen 1"_s);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Reveal in Finder"_s) != nullptr; }));
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_TRUE(waitUntil([&] { return inWindow(u"Reveal in Finder"_s) == nullptr; }));
    rightClick(u"pool 2"_s);
    EXPECT_TRUE(waitUntil([&] { return inWindow(u"Reveal in Finder"_s) != nullptr; }));
}

TEST_F(ResultsTest, WithNoClipUnderReviewThereIsNoRowToLookAt)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    EXPECT_TRUE(shows(u"Kitchen"_s));
    EXPECT_EQ(findShown(scene->root(), u"Needs a look"_s), nullptr);
}

TEST_F(ResultsTest, TheContextMenuTagsByKeyboard)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    grid()->forceActiveFocus(Qt::TabFocusReason);
    scene->key(Qt::Key_Menu);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Also Tag"_s) != nullptr; }));
    typeTo(u"a"_s);
    scene->key(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    typeTo(u"gara"_s);
    scene->key(Qt::Key_Return);
    EXPECT_THAT(clip(u"kitchen 1"_s)->extraBins, ElementsAre(u"Garage"_s));
    EXPECT_TRUE(waitUntil([&] { return grid()->hasActiveFocus(); })) << "the grid has the keyboard again";
}

TEST_F(ResultsTest, AnEmptiedBinSaysSoAndTheArrowsOfTheBinsLeadOnFromIt)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "pool 3"});
    scene->click(u"Pool"_s);
    ASSERT_TRUE(shows(u"pool 3"_s));
    engine.reassign(clip(u"pool 3"_s)->id, u"Kitchen"_s);
    EXPECT_TRUE(goes(u"Pool"_s));
    EXPECT_TRUE(shows(u"No clips are left in Pool"_s));
    scene->key(Qt::Key_Up); // in the bins, of which none is chosen
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    EXPECT_TRUE(goes(u"No clips are left in Pool"_s));
}

TEST_F(ResultsTest, ACardsPictureKeepsItsShapeHoweverWideTheCardIs)
{
    sortAndShowAll({"kitchen 1"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Garage"_s);
    ASSERT_TRUE(shows(u"Garage"_s));
    QStringList sources;
    const std::function<void(const QQuickItem *)> collect = [&](const QQuickItem *item) {
        if (item->inherits("QQuickImage")) {
            sources.append(item->property("source").toString());
        }
        std::ranges::for_each(item->childItems(), collect);
    };
    collect(grid());
    ASSERT_THAT(sources, SizeIs(2)); // the card's, and the glass of its tag
    for (const QString &source : sources) {
        EXPECT_TRUE(source.contains(u"&crop"_s)) << source.toStdString();
    }
}

TEST_F(ResultsTest, TheGridIsWorkedByKeyboardAndKeepsItAfterAnEdit)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "kitchen 3", "pool 4"});
    scene->key(Qt::Key_Tab);
    ASSERT_TRUE(grid()->hasActiveFocus());
    scene->key(Qt::Key_Right);
    scene->key(Qt::Key_Return);
    EXPECT_EQ(engine.previewClip(), clip(u"kitchen 2"_s));
    engine.closePreview();
    grid()->forceActiveFocus();
    scene->key(Qt::Key_Space);
    EXPECT_EQ(engine.previewClip(), clip(u"kitchen 2"_s));
    engine.closePreview();
    grid()->forceActiveFocus();
    scene->key(Qt::Key_M);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    typeTo(u"bath"_s);
    scene->key(Qt::Key_Return);
    EXPECT_EQ(clip(u"kitchen 2"_s)->primaryBin, u"Bathroom"_s);
    EXPECT_TRUE(waitUntil([&] { return grid()->hasActiveFocus(); }));
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 1) << "on the clip that took its place";
    scene->key(Qt::Key_End);
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 1);
    scene->key(Qt::Key_Home);
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 0);
}

TEST_F(ResultsTest, PageKeysMoveByAsManyClipsAsTheGridHasRoomFor)
{
    for (int i = 0; i < 60; ++i) {
        (void)folder.write("kitchen " + std::to_string(i) + ".mov");
    }
    sortAndShow();
    ASSERT_TRUE(waitUntil([&] { return grid() && grid()->property("count").toInt() == 60; }));
    grid()->forceActiveFocus(Qt::TabFocusReason);
    const int columns = grid()->property("columns").toInt();
    const int page = static_cast<int>(grid()->height() / grid()->property("cellHeight").toDouble()) * columns;
    ASSERT_GT(page, columns);
    scene->key(Qt::Key_PageDown);
    EXPECT_EQ(grid()->property("currentIndex").toInt(), page);
    scene->key(Qt::Key_PageUp);
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 0);
}

TEST_F(ResultsTest, EndLeadsToTheLastBinAndHomeToTheClipsUnderReview)
{
    sortAndShowAll({"kitchen 1", "pool 2", "dark 3"});
    scene->key(Qt::Key_End);
    EXPECT_EQ(engine.selectedBin(), engine.binCounts().back().bin);
    scene->key(Qt::Key_Home);
    EXPECT_EQ(engine.selectedBin(), reviewKey());
}

TEST_F(ResultsTest, TheGridKeepsItsPlaceWhenAClipLeavesIt)
{
    std::vector<std::string> names;
    for (int i = 0; i < 60; ++i) {
        (void)folder.write("kitchen " + std::to_string(i) + ".mov");
    }
    sortAndShow();
    ASSERT_TRUE(waitUntil([&] { return grid() && grid()->property("count").toInt() == 60; }));
    grid()->setProperty("contentY", 900.0);
    engine.reassign(clip(u"kitchen 40"_s)->id, u"Pool"_s);
    EXPECT_TRUE(waitUntil([&] { return grid()->property("count").toInt() == 59; }));
    scene->drawFrames(30); // of whatever would move
    EXPECT_DOUBLE_EQ(grid()->property("contentY").toDouble(), 900.0);
}

TEST_F(ResultsTest, NamesOfAnyLengthAndScriptAreShownAndMayBeEdited)
{
    const std::string longName = "kitchen 1 " + std::string(241, 'x');
    makeClips({"kitchen 2", "kitchen 3 \u05de\u05d8\u05d1\u05d7", "kitchen 4 \U0001F3E0\U0001F468\u200D\U0001F373"});
    (void)folder.write(longName + ".mov");
    sortAndShow();
    EXPECT_TRUE(shows(QString::fromStdString(longName)));
    EXPECT_TRUE(shows(u"kitchen 3 \u05de\u05d8\u05d1\u05d7"_s));
    EXPECT_TRUE(shows(u"kitchen 4 \U0001F3E0\U0001F468\u200D\U0001F373"_s));
    scene->click(QString::fromStdString(longName));
    EXPECT_TRUE(engine.hasPreview());
    for (const ClipPtr &each : engine.clips()) {
        engine.reassign(each->id, u"Pool"_s);
    }
    EXPECT_TRUE(shows(u"Pool"_s));
}

TEST_F(ResultsTest, AProjectWhoseFootageIsGoneShowsItsClips)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    engine.reset();
    std::filesystem::remove(folder / "kitchen 1.mov");
    std::filesystem::remove(folder / "pool 2.mov");
    engine.openProject(projectID(shoot));
    EXPECT_TRUE(shows(u"kitchen 1"_s));
    EXPECT_TRUE(shows(shoot.lastPathComponent() + u" · 2 clips · 2 bins"_s));
}

TEST_F(ResultsTest, SplitBinsCountEachForThemselvesInTheTitle)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "pool 3"});
    engine.reassign(clip(u"kitchen 1"_s)->id, u"Kitchen 1"_s);
    engine.reassign(clip(u"kitchen 2"_s)->id, u"Kitchen 2"_s);
    engine.toggleExtraBin(clip(u"pool 3"_s)->id, u"Kitchen 2"_s);
    EXPECT_TRUE(shows(shoot.lastPathComponent() + u" · 3 clips · 3 bins"_s));
}

TEST_F(ResultsTest, RightGoesFromTheBinsIntoTheClipsAndLeftOfTheFirstOneBack)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "dark 3"});
    engine.setSelectedBin(u"Kitchen"_s);
    ASSERT_TRUE(waitUntil([&] { return grid() != nullptr; }));
    EXPECT_FALSE(grid()->hasActiveFocus());
    scene->key(Qt::Key_Right);
    EXPECT_TRUE(grid()->hasActiveFocus());
    scene->key(Qt::Key_Right);
    EXPECT_EQ(grid()->property("currentIndex"), 1);
    scene->key(Qt::Key_Left);
    EXPECT_TRUE(grid()->hasActiveFocus());
    scene->key(Qt::Key_Left);
    EXPECT_FALSE(grid()->hasActiveFocus());
    scene->key(Qt::Key_Up); // the bins have it again
    ASSERT_TRUE(waitUntil([&] { return list() != nullptr; }));
    scene->key(Qt::Key_Right);
    EXPECT_TRUE(list()->hasActiveFocus());
    scene->key(Qt::Key_Left);
    EXPECT_FALSE(list()->hasActiveFocus());
}
