// The screen in each of its stages.
#include <QtGui/QAccessible>
#include <QtGui/QTextLayout>

#include "core/copies/UnfinishedCopy.h"
#include "design/LK.h"
#include "screens/engine/Wording.h"
#include "tests/screens/BinnacleViewFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::SizeIs;

TEST_F(BinnacleViewTest, LandsOnTheDropTarget)
{
    show();
    EXPECT_TRUE(shows(u"Binnacle"_s));
    EXPECT_TRUE(shows(u"Drop a shoot folder here"_s));
    EXPECT_TRUE(shows(u"Binnacle reads every clip in place, builds your bins, and sorts each shot by room and type. "
                      u"Footage isn't uploaded or moved."_s));
    EXPECT_TRUE(shows(u"Or drag a folder from Finder onto this window"_s));
    EXPECT_TRUE(shows(u"Binnacle · build 7"_s));
    EXPECT_TRUE(goes(u"Export"_s));
}

TEST_F(BinnacleViewTest, ChooseFolderAsksForOneByMouseAndByKeyboard)
{
    show();
    scene->click(u"Choose Folder"_s);
    ASSERT_THAT(panels, SizeIs(1));
    EXPECT_EQ(panels[0].prompt, u"Sort This Folder"_s);
    EXPECT_EQ(panels[0].message, u"Choose the folder holding this shoot's raw clips."_s);
    EXPECT_EQ(focusedText(), u"Choose Folder"_s);
    scene->key(Qt::Key_Return);
    EXPECT_THAT(panels, SizeIs(2));
}

TEST_F(BinnacleViewTest, AFolderWithoutClipsIsNamed)
{
    show();
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_TRUE(shows(u"No video files found in "_s + shoot.lastPathComponent()));
    EXPECT_TRUE(shows(u"Binnacle looked in that folder and every folder inside it. Check that the card is mounted, or "
                      u"choose a different folder."_s));
    scene->click(u"Choose Another Folder"_s);
    EXPECT_THAT(panels, SizeIs(1));
}

TEST_F(BinnacleViewTest, AFailureBeforeAnySortLeadsBackToEmptyResults)
{
    show();
    engine.setImportRoot(FileUrl(folder / "gone"));
    engine.importCard(shoot, u"CARD"_s);
    EXPECT_TRUE(shows(u"Couldn't write the event"_s));
    EXPECT_TRUE(shows(u"Your Shoots folder isn't available right now — check it's connected, then try again."_s));
    scene->click(u"Back to the Clips"_s);
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_FALSE(findShown(scene->root(), u"Export"_s)->isEnabled());
    EXPECT_FALSE(findShown(scene->root(), u"Sort Again"_s)->isEnabled());
}

TEST_F(BinnacleViewTest, ResultsNameTheShootItsBinsAndTheClipsOfTheChosenOne)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3"});
    sortAndShow();
    EXPECT_TRUE(shows(shoot.lastPathComponent() + u" · 3 clips · 2 bins"_s));
    EXPECT_TRUE(shows(u"0 vertical · 3 horizontal · native aspect kept"_s));
    EXPECT_TRUE(shows(u"kitchen 1"_s));
    EXPECT_TRUE(shows(u"kitchen 2"_s));
    EXPECT_TRUE(goes(u"pool 3"_s));
    scene->click(u"Pool"_s);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
    EXPECT_TRUE(shows(u"pool 3"_s));
    EXPECT_TRUE(goes(u"kitchen 1"_s));
}

TEST_F(BinnacleViewTest, ClipsToLookAtComeFirstWithTheReason)
{
    makeClips({"kitchen 1", "dark 2"});
    sortAndShow();
    EXPECT_TRUE(shows(u"Needs a look"_s));
    EXPECT_TRUE(shows(u"dark 2.mov"_s));
    EXPECT_TRUE(shows(u"couldn't read any frames"_s));
}

TEST_F(BinnacleViewTest, WithCountsOffTheRowsShowNamesAlone)
{
    makeClips({"kitchen 1", "kitchen 2", "kitchen 3"});
    sortAndShow();
    EXPECT_TRUE(shows(u"3"_s));
    engine.setOptions({.showClipCounts = false});
    EXPECT_TRUE(goes(u"3"_s));
    EXPECT_TRUE(shows(u"Kitchen"_s));
}

TEST_F(BinnacleViewTest, ArrowsWalkTheBinsAndTabLeadsToTheClipsAndTheButtons)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3"});
    sortAndShow();
    ASSERT_TRUE(shows(u"Kitchen"_s));
    scene->key(Qt::Key_Down);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
    scene->key(Qt::Key_Down);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s) << "the last row stays";
    scene->key(Qt::Key_Home);
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    ASSERT_TRUE(shows(u"kitchen 2"_s));
    scene->key(Qt::Key_Tab);
    const QQuickItem *grid = findNamed(scene->root(), u"clips"_s);
    EXPECT_TRUE(grid->hasActiveFocus());
    EXPECT_EQ(grid->property("currentIndex").toInt(), 0);
    scene->key(Qt::Key_Right);
    EXPECT_EQ(grid->property("currentIndex").toInt(), 1);
    scene->key(Qt::Key_Tab);
    EXPECT_EQ(focusedText(), u"On This Mac"_s);
    scene->key(Qt::Key_Tab);
    EXPECT_EQ(focusedText(), u"What this model does"_s);
    scene->key(Qt::Key_Tab);
    EXPECT_EQ(focusedText(), u"Sort Again"_s);
    scene->key(Qt::Key_Tab);
    EXPECT_EQ(focusedText(), u"Export"_s);
    scene->key(Qt::Key_Return);
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(BinnacleViewTest, ExportTellsWhereTheEventWentAndTheWayBack)
{
    makeClips({"kitchen 1", "pool 2"});
    sortAndShow();
    scene->click(u"Export"_s);
    const QString name = shoot.lastPathComponent();
    EXPECT_TRUE(shows(name + u" · event created"_s));
    EXPECT_TRUE(shows(u"Event created"_s));
    EXPECT_TRUE(shows(name + u".fcpxml · 2 bins · 2 clips"_s));
    // The line that names it tells its place.
    const QString path = FileUrl(folder.path() / (folder.path().filename().string() + ".fcpxml")).displayPath();
    const QQuickItem *summary = findShown(scene->root(), name + u".fcpxml · 2 bins · 2 clips"_s);
    ASSERT_NE(summary, nullptr);
    EXPECT_TRUE(std::ranges::any_of(summary->childItems(),
                                    [&](const QQuickItem *child) { return child->property("text") == path; }));
    EXPECT_TRUE(std::ranges::none_of(summary->parentItem()->childItems(),
                                     [&](const QQuickItem *line) { return line->property("text") == path; }));
    EXPECT_TRUE(shows(u"Your footage was not moved or copied."_s));
    scene->click(u"Reveal in Finder"_s);
    EXPECT_THAT(revealed, SizeIs(1));
    scene->click(u"Open in Final Cut Pro"_s);
    EXPECT_THAT(opened, SizeIs(2)) << "the export has opened it once";
    scene->click(u"Back to the Clips"_s);
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    scene->click(u"Export"_s);
    scene->click(u"Sort Another Shoot"_s);
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
}

TEST_F(BinnacleViewTest, ExportIsGreyedOutForPremiereAndSortAgainIsNot)
{
    makeClips({"kitchen 1"});
    sortAndShow();
    engine.setTarget(NLE::premiere);
    EXPECT_FALSE(findShown(scene->root(), u"Export"_s)->isEnabled());
    EXPECT_TRUE(findShown(scene->root(), u"Sort Again"_s)->isEnabled());
}

TEST_F(BinnacleViewTest, AnEventThatCannotBeWrittenSaysWhyAndLeadsBack)
{
    makeClips({"kitchen 1"});
    std::filesystem::create_directory(folder.path() / (folder.path().filename().string() + ".fcpxml"));
    sortAndShow();
    scene->click(u"Export"_s);
    EXPECT_TRUE(shows(u"Couldn't write the event"_s));
    EXPECT_TRUE(shows(u"Is a directory"_s));
    scene->click(u"Back to the Clips"_s);
    EXPECT_EQ(engine.stage().kind, StageKind::results);
}

TEST_F(BinnacleViewTest, SaysWhatKeepsClipsFromBeingRecognised)
{
    show();
    EXPECT_TRUE(goes(u"no models"_s));
    scene->root()->setProperty("problem", u"no models"_s);
    EXPECT_TRUE(shows(u"no models"_s));
}

TEST_F(BinnacleViewTest, WhatOfACardCouldNotBeReadIsToldOnEveryScreenUntilItIsDismissedByKeyboard)
{
    const auto closed = folder.write("card/DCIM/pool 2.mov").parent_path();
    std::filesystem::create_directory(folder / "Shoots");
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    std::filesystem::permissions(folder / "Shoots", std::filesystem::perms::all);
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    show();
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    {
        const Unprivileged user;
        engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
        ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    }
    std::filesystem::permissions(closed, std::filesystem::perms::all);
    const QString note = u"Clips may be missing: “DCIM” on CARD couldn't be read. Don't erase the card."_s;
    EXPECT_TRUE(shows(u"No video files found in card"_s));
    EXPECT_TRUE(shows(note));
    engine.reset();
    EXPECT_TRUE(shows(u"Drop a shoot folder here"_s));
    EXPECT_TRUE(shows(note));

    ASSERT_TRUE(hasKeyboard(u"Choose Folder"_s)) << "the note takes no focus";
    scene->key(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_TRUE(hasKeyboard(u"Dismiss"_s));
    QAccessibleInterface *button = QAccessible::queryAccessibleInterface(scene->window().activeFocusItem());
    EXPECT_EQ(button->text(QAccessible::Description), note) << "for whoever hears only what has the focus";
    EXPECT_EQ(button->parent()->role(), QAccessible::AlertMessage);
    EXPECT_EQ(button->parent()->text(QAccessible::Name), note);
    scene->key(Qt::Key_Return);
    EXPECT_TRUE(goes(note));
    EXPECT_TRUE(hasKeyboard(u"Choose Folder"_s));
}

namespace {

// An engine whose copies of cards are held back, and then lack the card's last clip.
class StoppedCopyViewTest : public BinnacleViewTest
{
protected:
    StoppedCopyViewTest() : BinnacleViewTest(stoppingSeams()) {}

    SortSeams stoppingSeams()
    {
        SortSeams parts = seams();
        parts.copyFiles = [this](const auto &...) {
            copying.pass();
            return std::vector<CopyResult>();
        };
        return parts;
    }

    Gate copying;
};

} // namespace

TEST_F(StoppedCopyViewTest, WhatAStoppedCopyLeftOutIsSaidOnEveryScreenUntilItIsDismissed)
{
    (void)folder.write("card/pool 1.mov");
    (void)folder.write("plain/kitchen 1.mov");
    std::filesystem::create_directory(folder / "Shoots");
    show();
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    copying.awaitArrival();
    const QString shootName = engine.folderName();
    engine.reset();
    copying.open();
    const QString note =
        u"The copy of CARD was stopped: “pool 1.mov” isn't in “%1”. Don't erase the card."_s.arg(shootName);
    EXPECT_TRUE(shows(u"Drop a shoot folder here"_s));
    EXPECT_TRUE(shows(note));
    engine.sortFolder(FileUrl(folder / "plain"));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_TRUE(shows(u"kitchen 1"_s));
    EXPECT_TRUE(shows(note));
    scene->click(u"Dismiss"_s);
    EXPECT_TRUE(goes(note));
    EXPECT_TRUE(engine.unfinishedCopies().empty());
    EXPECT_TRUE(waitUntil([this] {
        const QQuickItem *item = scene->window().activeFocusItem();
        return item != nullptr && item->isVisible();
    })) << "the button goes, and focus with it";
}

TEST_F(BinnacleViewTest, TheModelsNoteTellsOfTheChosenOne)
{
    show();
    scene->click(u"What this model does"_s);
    const auto inWindow = [this](const QString &text) {
        return waitUntil([&] { return findShown(scene->window().contentItem(), text) != nullptr; });
    };
    EXPECT_TRUE(inWindow(u"Local: On This Mac"_s));
    EXPECT_TRUE(inWindow(u"Runs entirely on this Mac with Apple's built-in vision. Works offline, costs nothing, and "
                         u"no frames leave the machine."_s));
    EXPECT_TRUE(inWindow(u"70% accuracy on a typical listing shoot"_s));
    engine.setModelTier(ModelTier::cloud);
    EXPECT_TRUE(inWindow(u"Skyreader"_s));
    EXPECT_TRUE(
        inWindow(u"Sends a few downscaled still frames to a vision model. Much better on hard shots — doorways, "
                 u"open plan, staged vs. empty rooms. Source footage never leaves this Mac."_s));
    EXPECT_TRUE(inWindow(u"95% accuracy on a typical listing shoot"_s));
}

TEST_F(BinnacleViewTest, AFoldersNameIsNoPatternAndTurnsNothingAroundIt)
{
    const auto titleOf = [this](const char *name) {
        (void)folder.write(std::filesystem::path(name) / "kitchen 1.mov");
        (void)folder.write(std::filesystem::path(name) / "pool 2.mov");
        engine.sortFolder(FileUrl(folder / name));
        EXPECT_TRUE(reaches(engine, StageKind::working));
        EXPECT_TRUE(reaches(engine, StageKind::results));
    };
    show();
    titleOf("House 50%1 off %2 %3");
    EXPECT_TRUE(shows(u"House 50%1 off %2 %3 · 2 clips · 2 bins"_s));
    titleOf("בית 14");
    const QString isolated = u"\u2068בית 14\u2069"_s;
    EXPECT_TRUE(shows(isolated + u" · 2 clips · 2 bins"_s));
    scene->click(u"Export"_s);
    EXPECT_TRUE(shows(isolated + u" · event created"_s));
    EXPECT_TRUE(shows(u"\u200eבית 14.fcpxml · 2 bins · 2 clips"_s));
}

TEST_F(BinnacleViewTest, ARightToLeftNameStandsBeforeTheNumbersThatFollowIt)
{
    // The place of each letter counts, and not only which it is.
    const QString title = Wording::of(u"%1 · %2 clips · %3 bins"_s, {u"בית 14"_s, 24, 10});
    QTextLayout layout(title, LK::instance().font(11.5));
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const auto at = [&](const QString &part) { return line.cursorToX(static_cast<int>(title.indexOf(part))); };
    EXPECT_LT(at(u"בית"_s), at(u"24"_s));
    EXPECT_LT(at(u"24"_s), at(u"clips"_s));
    EXPECT_LT(at(u"clips"_s), at(u"10"_s));
    EXPECT_LT(at(u"10"_s), at(u"bins"_s));
}
