// A sorted shoot in the window: its bins, the clips to look at, and one clip large.
#include "core/bins/RoomLabel.h"
#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace {

class ResultsWindowTest : public ShellWindowTest
{
protected:
    void sortAll(std::initializer_list<const char *> names)
    {
        open();
        makeClips(names);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    [[nodiscard]] ClipPtr clip(const QString &name) const
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        return found == engine.clips().end() ? nullptr : *found;
    }

    // The tool tip with this text, there or yet to come.
    static QQuickItem *findTip(QQuickItem *root, const QString &text)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->isVisible() && child->property("told").isValid() && child->property("text") == text) {
                return child;
            }
            if (QQuickItem *found = findTip(child, text)) {
                return found;
            }
        }
        return nullptr;
    }

    // Opens a clip's context menu and one of its submenus.
    void openSubmenu(const QString &card, const QString &entry)
    {
        Desktop::rightClick(shown(card));
        Desktop::click(shown(entry));
    }
};

} // namespace

TEST_F(ResultsWindowTest, AClipIsMovedByMoveToOfItsContextMenu)
{
    sortAll({"kitchen 1", "kitchen 2"});
    openSubmenu(u"kitchen 1"_s, u"Move to"_s);
    (void)shown(u"✓ Kitchen"_s);
    Desktop::click(shown(u"Bathroom"_s));
    EXPECT_TRUE(waitUntil([this] { return clip(u"kitchen 1"_s)->primaryBin == u"Bathroom"_s; }));
    ASSERT_TRUE(goes(u"kitchen 1"_s));
    Desktop::click(shown(u"Bathroom"_s)); // its row
    (void)shown(u"kitchen 1"_s);
}

TEST_F(ResultsWindowTest, ACardInTheGridOfItsExtraBinOpensTheSameClip)
{
    sortAll({"kitchen 1", "pool 2"});
    openSubmenu(u"kitchen 1"_s, u"Also Tag"_s);
    (void)shown(u"Garage"_s);
    Desktop::click(shown(u"Garage"_s));
    ASSERT_TRUE(waitUntil([this] { return !clip(u"kitchen 1"_s)->extraBins.empty(); }));
    ASSERT_TRUE(goes(u"Also Tag"_s));
    engine.setSelectedBin(u"Garage"_s);
    Desktop::click(shown(u"kitchen 1"_s));
    EXPECT_TRUE(waitUntil([this] { return engine.previewClip() == clip(u"kitchen 1"_s); }));
}

TEST_F(ResultsWindowTest, WhenTheLastClipLeavesABinItsRowGoesAndTheSelectionStays)
{
    sortAll({"kitchen 1", "kitchen 2", "pool 3"});
    Desktop::click(shown(u"Pool"_s));
    openSubmenu(u"pool 3"_s, u"Move to"_s);
    (void)shown(u"✓ Pool"_s);
    Desktop::key(u"k"_s);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return clip(u"pool 3"_s)->primaryBin == u"Kitchen"_s; }));
    EXPECT_TRUE(goes(u"Pool"_s));
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s); // only the review list is left by itself
}

TEST_F(ResultsWindowTest, WithNoClipUnderReviewThereIsNoRowToLookAtAndWithCountsOffNamesStandAlone)
{
    sortAll({"kitchen 1", "kitchen 2", "kitchen 3"});
    const QQuickItem &row = shown(u"Kitchen"_s);
    EXPECT_FALSE(isShown(u"Needs a look"_s));
    EXPECT_TRUE(isShown(u"3"_s));
    SortOptions options = engine.options();
    options.showClipCounts = false;
    engine.setOptions(options);
    EXPECT_TRUE(goes(u"3"_s));
    EXPECT_TRUE(row.isVisible());
}

TEST_F(ResultsWindowTest, TheReviewListCountsItsClipsAndConfirmingTheLastShowsTheFirstBin)
{
    sortAll({"kitchen 1", "kitchen 2", "dark 3", "dark 4"});
    (void)shown(u"2 clips Binnacle wasn't sure about"_s);
    Desktop::click(shown(u"Confirm"_s));
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    EXPECT_EQ(clip(u"dark 3"_s)->primaryBin, unsortedBin());
    Desktop::click(shown(u"Confirm"_s));
    EXPECT_TRUE(goes(u"Needs a look"_s));
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    (void)shown(u"kitchen 1"_s);
}

TEST_F(ResultsWindowTest, ConfirmAllEmptiesTheListInOneStepAndShowsTheFirstBin)
{
    sortAll({"kitchen 1", "kitchen 2", "kitchen 3", "dark 4", "dark 5"});
    Desktop::click(shown(u"Confirm All"_s));
    EXPECT_TRUE(goes(u"Needs a look"_s));
    EXPECT_EQ(engine.reviewCount(), 0);
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
}

TEST_F(ResultsWindowTest, AClipOfWhichNoRoomWasReadShowsUnsortedAndLeavesTheListByItsDropdown)
{
    sortAll({"kitchen 1", "dark 2", "dark 3"});
    clip(u"dark 2"_s)->reviewReason = u"no room read from the frames"_s;
    Q_EMIT engine.clipsChanged();
    (void)shown(u"no room read from the frames"_s);
    EXPECT_EQ(control(u"Bin of dark 2.mov"_s).property("shownLabel"), u"Unsorted"_s);
    choose(u"Bin of dark 2.mov"_s, u"Bathroom"_s);
    EXPECT_EQ(clip(u"dark 2"_s)->primaryBin, u"Bathroom"_s);
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
}

TEST_F(ResultsWindowTest, ThePreviewMovesTheClipInTheGridBehindIt)
{
    sortAll({"kitchen 1", "kitchen 2"});
    Desktop::click(shown(u"kitchen 2"_s));
    (void)shown(u"0.0s · 0 × 0 · 59.94 fps"_s);
    choose(u"Bin"_s, u"Bathroom"_s);
    EXPECT_EQ(clip(u"kitchen 2"_s)->primaryBin, u"Bathroom"_s);
    EXPECT_TRUE(goes(u"kitchen 2"_s)); // the card, without its extension
    EXPECT_TRUE(isShown(u"kitchen 2.mov"_s));
    choose(u"Second bin"_s, u"Bedroom"_s);
    EXPECT_THAT(clip(u"kitchen 2"_s)->extraBins, ElementsAre(u"Bedroom"_s));
    Desktop::click(shown(u"Done"_s));
    EXPECT_TRUE(waitUntil([this] { return !engine.hasPreview(); }));
    EXPECT_TRUE(goes(u"kitchen 2.mov"_s));
}

TEST_F(ResultsWindowTest, APressOnTheScrimClosesThePreviewAndOneOnTheCardDoesNot)
{
    sortAll({"kitchen 1"});
    Desktop::click(shown(u"kitchen 1"_s));
    Desktop::click(shown(u"kitchen 1.mov"_s));
    drain();
    EXPECT_TRUE(engine.hasPreview());
    const QPoint scrim = window->mapToGlobal(QPoint(60, 700));
    Desktop::drag(scrim, scrim);
    EXPECT_TRUE(waitUntil([this] { return !engine.hasPreview(); }));
}

TEST_F(ResultsWindowTest, AfterAMenuAndAfterPreferencesTheKeyboardIsWhereItWas)
{
    sortAll({"kitchen 1", "pool 2"});
    (void)shown(u"kitchen 1"_s);
    openMenu();
    closeMenu();
    Desktop::key(u"Down"_s); // in the bins
    EXPECT_TRUE(waitUntil([this] { return engine.selectedBin() == u"Pool"_s; }));
    Desktop::key(u"ctrl+comma"_s);
    (void)shown(u"Binnacle Preferences"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));
    Desktop::key(u"Up"_s);
    EXPECT_TRUE(waitUntil([this] { return engine.selectedBin() == u"Kitchen"_s; }));
}

TEST_F(ResultsWindowTest, AfterThePreviewTheArrowsGoOnFromItsClip)
{
    sortAll({"kitchen 1", "kitchen 2", "kitchen 3"});
    Desktop::click(shown(u"kitchen 1"_s));
    Desktop::click(shown(u"Done"_s));
    ASSERT_TRUE(goes(u"Done"_s));
    Desktop::key(u"Right"_s);
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(waitUntil([this] { return engine.previewClip() == clip(u"kitchen 2"_s); }));
    (void)shown(u"Done"_s);
    Desktop::key(u"ctrl+comma"_s); // above it
    (void)shown(u"Binnacle Preferences"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Done"_s));
    Desktop::key(u"Right"_s);
    drain();
    EXPECT_FALSE(engine.hasPreview()); // nothing below Preferences hears keys
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));
    Desktop::key(u"Right"_s);
    Desktop::key(u"space"_s);
    EXPECT_TRUE(waitUntil([this] { return engine.previewClip() == clip(u"kitchen 3"_s); }));
}

TEST_F(ResultsWindowTest, AfterAnExportByMouseReturnGoesOnAndDoesNotExportAgain)
{
    sortAll({"kitchen 1"});
    engine.setOptions([this] {
        SortOptions options = engine.options();
        options.openEditorAfterExport = false;
        return options;
    }());
    Desktop::click(shown(u"Export"_s));
    (void)shown(u"Event created"_s);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return opened.size() == 1; })); // the event, in its editor
}

TEST_F(ResultsWindowTest, InTheReviewListTheKeyboardSurvivesEditsByMouse)
{
    sortAll({"kitchen 0", "dark 1", "dark 2", "dark 3", "dark 4", "dark 5"});
    (void)shown(u"5 clips Binnacle wasn't sure about"_s);
    Desktop::click(shown(u"Confirm"_s));
    (void)shown(u"4 clips Binnacle wasn't sure about"_s);
    Desktop::key(u"c"_s);
    (void)shown(u"3 clips Binnacle wasn't sure about"_s);
    choose(u"Bin of dark 3.mov"_s, u"Bathroom"_s);
    (void)shown(u"2 clips Binnacle wasn't sure about"_s);
    Desktop::key(u"c"_s);
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    Desktop::key(u"m"_s); // its picker, in which a letter jumps
    Desktop::key(u"p"_s);
    Desktop::key(u"o"_s);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(goes(u"Needs a look"_s));
    EXPECT_EQ(clip(u"dark 5"_s)->primaryBin, u"Pool"_s);
    // The grid that takes the list's place has it.
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(waitUntil([this] { return engine.hasPreview(); }));
}

TEST_F(ResultsWindowTest, InTheGridTheKeyboardSurvivesEditsByMouse)
{
    sortAll({"kitchen 1", "kitchen 2", "kitchen 3", "kitchen 4", "kitchen 5"});
    Desktop::moveTo(shown(u"kitchen 2"_s));
    Desktop::click(shown(u"Move"_s));
    Desktop::click(shown(u"Bathroom"_s));
    ASSERT_TRUE(goes(u"kitchen 2"_s));
    ASSERT_TRUE(goes(u"✓ Kitchen"_s));
    Desktop::key(u"Return"_s); // of what took its place
    ASSERT_TRUE(waitUntil([this] { return engine.previewClip() == clip(u"kitchen 3"_s); }));
    (void)shown(u"Done"_s);
    choose(u"Bin"_s, u"Bathroom"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Done"_s));
    Desktop::key(u"Right"_s);
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(waitUntil([this] { return engine.previewClip() == clip(u"kitchen 5"_s); }));
    (void)shown(u"Done"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Done"_s));
    Desktop::rightClick(shown(u"kitchen 1"_s));
    (void)shown(u"Also Tag"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Also Tag"_s));
    Desktop::key(u"space"_s);
    EXPECT_TRUE(waitUntil([this] { return engine.previewClip() == clip(u"kitchen 1"_s); }));
}

TEST_F(ResultsWindowTest, APointerThatRestsIsToldWhatThereIsToPress)
{
    sortAll({"kitchen 1", "kitchen 2", "dark 3"});
    (void)shown(u"Needs a look"_s);
    const auto tells = [this](const QString &text) {
        const QQuickItem *tip = nullptr;
        if (!waitUntil([&] { return (tip = findTip(window->contentItem(), text)) != nullptr; })) {
            return false;
        }
        const bool toldBefore = tip->property("told").toBool();
        Desktop::moveTo(*tip->parentItem());
        return !toldBefore && waitUntil([&] { return tip->property("told").toBool(); });
    };
    for (const QString &help : {u"Open preview"_s, u"Back to Larkspan"_s, u"Switch projects, or start a new one"_s,
                                u"Preferences"_s, u"Settings and account"_s, u"What this model does"_s}) {
        EXPECT_TRUE(tells(help)) << help.toStdString();
    }
    engine.setSelectedBin(u"Kitchen"_s);
    EXPECT_TRUE(tells(u"kitchen 2.mov · 0:00"_s));
}
