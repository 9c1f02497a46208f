#include "core/RoomLabel.h"
#include "tests/screens/BinnacleViewFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The results of a sort, worked in by mouse and keyboard.
class ResultsTest : public BinnacleViewTest
{
protected:
    void sortAndShowAll(std::initializer_list<const char *> names)
    {
        makeClips(names);
        sortAndShow();
        ASSERT_TRUE(QTest::qWaitFor([&] { return grid() || list(); }));
    }

    [[nodiscard]] QQuickItem *grid() const { return findNamed(scene->root(), u"clips"_s); }
    [[nodiscard]] QQuickItem *list() const { return findNamed(scene->root(), u"review"_s); }
    [[nodiscard]] ClipPtr clip(const QString &name) const
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        return found == engine.clips().end() ? nullptr : *found;
    }
    // In the window itself, menus and popups included.
    [[nodiscard]] QQuickItem *inWindow(const QString &text) const
    {
        return findShown(scene->window().contentItem(), text);
    }
    void hover(const QQuickItem *item)
    {
        QTest::mouseMove(&scene->window(), middleOf(item) - QPoint(2, 0));
        QTest::mouseMove(&scene->window(), middleOf(item));
    }
    void rightClick(const QString &text)
    {
        ASSERT_TRUE(shows(text));
        QTest::mouseClick(&scene->window(), Qt::RightButton, {}, middleOf(findShown(scene->root(), text)));
    }
    void typeTo(const QString &name)
    {
        for (const QChar letter : name) {
            QTest::keyClick(&scene->window(), letter.toLatin1());
        }
    }
};

} // namespace

TEST_F(ResultsTest, AClickOnACardOpensItsPreviewAndDoneClosesIt)
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
    EXPECT_TRUE(hides(u"Move"_s));
    hover(findShown(grid(), u"kitchen 1"_s));
    ASSERT_TRUE(shows(u"Move"_s));
    scene->click(u"Move"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    scene->click(u"Bathroom"_s);
    EXPECT_EQ(clip(u"kitchen 1"_s)->primaryBin, u"Bathroom"_s);
    QTest::mouseMove(&scene->window(), QPoint(100, 500));
    EXPECT_TRUE(hides(u"Move"_s));
}

TEST_F(ResultsTest, TheContextMenuOpensMovesTagsAndReveals)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    rightClick(u"kitchen 1"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Reveal in Finder"_s) != nullptr; }));
    EXPECT_NE(inWindow(u"Move to"_s), nullptr);
    EXPECT_NE(inWindow(u"Also Tag"_s), nullptr);
    scene->click(u"Reveal in Finder"_s);
    EXPECT_THAT(revealed, ElementsAre(FileUrl(folder / "kitchen 1.mov")));
    rightClick(u"kitchen 1"_s);
    scene->click(u"Open Preview"_s);
    EXPECT_EQ(engine.previewClip(), clip(u"kitchen 1"_s));
}

TEST_F(ResultsTest, TheContextMenuTagsByKeyboard)
{
    sortAndShowAll({"kitchen 1", "pool 2"});
    grid()->forceActiveFocus(Qt::TabFocusReason);
    scene->key(Qt::Key_Menu);
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Also Tag"_s) != nullptr; }));
    typeTo(u"a"_s);
    scene->key(Qt::Key_Right);
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    typeTo(u"gara"_s);
    scene->key(Qt::Key_Return);
    EXPECT_THAT(clip(u"kitchen 1"_s)->extraBins, ElementsAre(u"Garage"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid()->hasActiveFocus(); })) << "the grid has the keyboard again";
}

TEST_F(ResultsTest, WhenTheLastClipLeavesABinItsRowGoesAndTheSelectionFollows)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "pool 3"});
    scene->click(u"Pool"_s);
    ASSERT_TRUE(shows(u"pool 3"_s));
    engine.reassign(clip(u"pool 3"_s)->id, u"Kitchen"_s);
    EXPECT_TRUE(hides(u"Pool"_s));
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s) << "only the review list is left by itself";
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
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    typeTo(u"bath"_s);
    scene->key(Qt::Key_Return);
    EXPECT_EQ(clip(u"kitchen 2"_s)->primaryBin, u"Bathroom"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid()->hasActiveFocus(); }));
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 1) << "on the clip that took its place";
    scene->key(Qt::Key_End);
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 1);
    scene->key(Qt::Key_Home);
    EXPECT_EQ(grid()->property("currentIndex").toInt(), 0);
}

TEST_F(ResultsTest, TheGridKeepsItsPlaceWhenAClipLeavesIt)
{
    std::vector<std::string> names;
    for (int i = 0; i < 60; ++i) {
        (void)folder.write("kitchen " + std::to_string(i) + ".mov");
    }
    sortAndShow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return grid() && grid()->property("count").toInt() == 60; }));
    grid()->setProperty("contentY", 900.0);
    engine.reassign(clip(u"kitchen 40"_s)->id, u"Pool"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid()->property("count").toInt() == 59; }));
    QTest::qWait(300); // for whatever would move
    EXPECT_DOUBLE_EQ(grid()->property("contentY").toDouble(), 900.0);
}

TEST_F(ResultsTest, OneClipToLookAtIsNamedInTheSingularAndTwoAreNot)
{
    sortAndShowAll({"kitchen 1", "dark 2", "dark 3"});
    EXPECT_TRUE(shows(u"2 clips Binnacle wasn't sure about"_s));
    engine.confirm(clip(u"dark 2"_s)->id);
    EXPECT_TRUE(shows(u"1 clip Binnacle wasn't sure about"_s));
}

TEST_F(ResultsTest, AClipOfWhichNothingWasReadStandsUnderUnsortedAndCanBeConfirmedAsItIs)
{
    sortAndShowAll({"kitchen 1", "dark 2"});
    clip(u"dark 2"_s)->reviewReason = u"no room read from the frames"_s;
    Q_EMIT engine.clipsChanged();
    ASSERT_TRUE(shows(u"no room read from the frames"_s));
    EXPECT_NE(findShown(list(), u"Unsorted"_s), nullptr);
    scene->click(u"Confirm"_s);
    EXPECT_EQ(clip(u"dark 2"_s)->primaryBin, u"Unsorted"_s);
    EXPECT_TRUE(hides(u"Needs a look"_s));
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    EXPECT_TRUE(shows(u"kitchen 1"_s));
}

TEST_F(ResultsTest, ConfirmAllEmptiesTheListInOneStepAndTheFirstBinIsShown)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "kitchen 3", "dark 4", "dark 5"});
    scene->click(u"Confirm All"_s);
    EXPECT_EQ(engine.reviewCount(), 0);
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    EXPECT_TRUE(shows(u"kitchen 1"_s));
}

TEST_F(ResultsTest, AReasonStandsExactlyAsItWasGiven)
{
    sortAndShowAll({"kitchen 1", "dark 2"});
    const QString reason = u"torn between Kitchen and Dining Room — 0.33 vs 0.30"_s;
    clip(u"dark 2"_s)->reviewReason = reason;
    Q_EMIT engine.clipsChanged();
    EXPECT_TRUE(shows(reason));
}

TEST_F(ResultsTest, AClipIsMovedByTheDropdownOfItsRow)
{
    sortAndShowAll({"kitchen 1", "dark 2", "dark 3"});
    ASSERT_TRUE(shows(u"dark 2.mov"_s));
    scene->click(u"Unsorted"_s); // in the side list
    engine.setSelectedBin(reviewKey());
    ASSERT_TRUE(shows(u"dark 2.mov"_s));
    scene->key(Qt::Key_Tab);
    list()->forceActiveFocus(Qt::TabFocusReason);
    scene->key(Qt::Key_M);
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    scene->click(u"Bathroom"_s);
    EXPECT_EQ(clip(u"dark 2"_s)->primaryBin, u"Bathroom"_s);
    EXPECT_TRUE(hides(u"dark 2.mov"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return list()->hasActiveFocus(); })) << "the list has the keyboard again";
}

TEST_F(ResultsTest, TheReviewListIsWorkedByKeyboard)
{
    sortAndShowAll({"kitchen 1", "dark 2", "dark 3", "dark 4"});
    scene->key(Qt::Key_Tab);
    scene->key(Qt::Key_Tab);
    ASSERT_TRUE(list()->hasActiveFocus());
    scene->key(Qt::Key_Down);
    scene->key(Qt::Key_C);
    EXPECT_FALSE(engine.isUnderReview(*clip(u"dark 3"_s)));
    EXPECT_TRUE(list()->hasActiveFocus());
    scene->key(Qt::Key_Return);
    EXPECT_EQ(engine.previewClip(), clip(u"dark 4"_s));
    engine.closePreview();
    list()->forceActiveFocus();
    scene->key(Qt::Key_C);
    scene->key(Qt::Key_C);
    EXPECT_EQ(engine.reviewCount(), 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return grid() != nullptr; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid()->hasActiveFocus(); })) << "what takes its place has the keyboard";
}

TEST_F(ResultsTest, AThumbnailOfTheReviewListOpensThePreview)
{
    sortAndShowAll({"dark 1"});
    ASSERT_TRUE(shows(u"dark 1.mov"_s));
    const QQuickItem *row = findShown(list(), u"dark 1.mov"_s);
    const QPoint name = row->mapToScene(QPointF(0, row->height() / 2)).toPoint();
    QTest::mouseClick(&scene->window(), Qt::LeftButton, {}, name - QPoint(12 + 48, 0));
    EXPECT_EQ(engine.previewClip(), clip(u"dark 1"_s));
}

TEST_F(ResultsTest, ThePreviewChangesTheBinsAndTheClipMovesInTheGridBehindIt)
{
    sortAndShowAll({"kitchen 1", "kitchen 2"});
    engine.setPreviewClip(clip(u"kitchen 2"_s));
    scene->click(u"No second bin"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return inWindow(u"Garage"_s) != nullptr; }));
    scene->click(u"Garage"_s);
    EXPECT_THAT(clip(u"kitchen 2"_s)->extraBins, ElementsAre(u"Garage"_s));
    engine.reassign(clip(u"kitchen 2"_s)->id, u"Pool"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid()->property("count").toInt() == 1; }));
    EXPECT_TRUE(shows(u"kitchen 2.mov"_s)) << "the preview stays";
}

TEST_F(ResultsTest, AClipThatIsGoneSaysSoWhenItIsToPlay)
{
    sortAndShowAll({"kitchen 1"});
    std::filesystem::remove(folder / "kitchen 1.mov");
    engine.setPreviewClip(clip(u"kitchen 1"_s));
    scene->click(u"Play"_s);
    EXPECT_TRUE(
        shows(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s));
    engine.closePreview();
    EXPECT_TRUE(
        hides(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s));
}

TEST_F(ResultsTest, AClipThatIsBrokenSaysSoWhenItIsToPlay)
{
    sortAndShowAll({"kitchen 1"});
    engine.setPreviewClip(clip(u"kitchen 1"_s));
    scene->click(u"Play"_s);
    EXPECT_TRUE(
        shows(u"This clip can't be played. Its file may be damaged, or of a kind that can't be played here."_s));
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
