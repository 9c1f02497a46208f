// The clips that the tool was not sure of.
#include "tests/screens/ResultsFixture.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

using ReviewListTest = ResultsTest;

} // namespace

TEST_F(ReviewListTest, OneClipToLookAtIsNamedInTheSingularAndTwoAreNot)
{
    sortAndShowAll({"kitchen 1", "dark 2", "dark 3"});
    EXPECT_TRUE(shows(u"2 clips Binnacle wasn't sure about"_s));
    engine.confirm(clip(u"dark 2"_s)->id);
    EXPECT_TRUE(shows(u"1 clip Binnacle wasn't sure about"_s));
}

TEST_F(ReviewListTest, AClipOfWhichNothingWasReadStandsUnderUnsortedAndCanBeConfirmedAsItIs)
{
    sortAndShowAll({"kitchen 1", "dark 2"});
    clip(u"dark 2"_s)->reviewReason = u"no room read from the frames"_s;
    Q_EMIT engine.clipsChanged();
    ASSERT_TRUE(shows(u"no room read from the frames"_s));
    EXPECT_NE(findShown(list(), u"Unsorted"_s), nullptr);
    scene->click(u"Confirm"_s);
    EXPECT_EQ(clip(u"dark 2"_s)->primaryBin, u"Unsorted"_s);
    EXPECT_TRUE(goes(u"Needs a look"_s));
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    EXPECT_TRUE(shows(u"kitchen 1"_s));
}

TEST_F(ReviewListTest, ConfirmAllEmptiesTheListInOneStepAndTheFirstBinIsShown)
{
    sortAndShowAll({"kitchen 1", "kitchen 2", "kitchen 3", "dark 4", "dark 5"});
    scene->click(u"Confirm All"_s);
    EXPECT_EQ(engine.reviewCount(), 0);
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    EXPECT_TRUE(shows(u"kitchen 1"_s));
}

TEST_F(ReviewListTest, AReasonStandsExactlyAsItWasGiven)
{
    sortAndShowAll({"kitchen 1", "dark 2"});
    const QString reason = u"torn between Kitchen and Dining Room — 0.33 vs 0.30"_s;
    clip(u"dark 2"_s)->reviewReason = reason;
    Q_EMIT engine.clipsChanged();
    EXPECT_TRUE(shows(reason));
}

TEST_F(ReviewListTest, AClipIsMovedByTheDropdownOfItsRow)
{
    sortAndShowAll({"kitchen 1", "dark 2", "dark 3"});
    ASSERT_TRUE(shows(u"dark 2.mov"_s));
    scene->click(u"Unsorted"_s); // in the side list
    engine.setSelectedBin(reviewKey());
    ASSERT_TRUE(shows(u"dark 2.mov"_s));
    scene->key(Qt::Key_Tab);
    list()->forceActiveFocus(Qt::TabFocusReason);
    scene->key(Qt::Key_M);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    scene->click(u"Bathroom"_s);
    EXPECT_EQ(clip(u"dark 2"_s)->primaryBin, u"Bathroom"_s);
    EXPECT_TRUE(goes(u"dark 2.mov"_s));
    EXPECT_TRUE(waitUntil([&] { return list()->hasActiveFocus(); })) << "the list has the keyboard again";
}

TEST_F(ReviewListTest, TheReviewListIsWorkedByKeyboard)
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
    ASSERT_TRUE(waitUntil([&] { return grid() != nullptr; }));
    EXPECT_TRUE(waitUntil([&] { return grid()->hasActiveFocus(); })) << "what takes its place has the keyboard";
}

TEST_F(ReviewListTest, EscapeFromThePickerGivesTheKeyboardBackToTheListAndFilesNothing)
{
    sortAndShowAll({"dark 1", "dark 2"});
    list()->forceActiveFocus(Qt::TabFocusReason);
    scene->key(Qt::Key_M);
    ASSERT_TRUE(waitUntil([&] { return inWindow(u"Bathroom"_s) != nullptr; }));
    scene->key(Qt::Key_Escape);
    scene->key(Qt::Key_Down); // at once
    EXPECT_TRUE(waitUntil([&] { return inWindow(u"Bathroom"_s) == nullptr; }));
    EXPECT_EQ(engine.reviewCount(), 2);
    scene->key(Qt::Key_C);
    EXPECT_FALSE(engine.isUnderReview(*clip(u"dark 2"_s))) << "the second row is the current one";
}

TEST_F(ReviewListTest, AThumbnailOfTheReviewListOpensThePreview)
{
    sortAndShowAll({"dark 1"});
    ASSERT_TRUE(shows(u"dark 1.mov"_s));
    const QQuickItem *row = findShown(list(), u"dark 1.mov"_s);
    const QPoint name = row->mapToScene(QPointF(0, row->height() / 2)).toPoint();
    QTest::mouseClick(&scene->window(), Qt::LeftButton, {}, name - QPoint(12 + 48, 0));
    EXPECT_EQ(engine.previewClip(), clip(u"dark 1"_s));
}
