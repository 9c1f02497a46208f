// Undoing and redoing in the window, by keys and by the menu.
#include "core/bins/RoomLabel.h"
#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class UndoWindowTest : public ShellWindowTest
{
protected:
    void openSorted(std::initializer_list<const char *> names)
    {
        open();
        makeClips(names);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    QString binOf(const QString &name) const
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        return found == engine.clips().end() ? QString() : (*found)->primaryBin;
    }

    [[nodiscard]] bool isFiled(const QString &name, const QString &bin) const
    {
        return waitUntil([&] { return binOf(name) == bin; });
    }

    void move(const QString &name, const QString &bin)
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        ASSERT_NE(found, engine.clips().end());
        engine.reassign((*found)->id, bin);
    }

    void openSwitcher()
    {
        Desktop::click(shown(u"Projects"_s));
        (void)shown(u"Reopen a sorted shoot, or start a new one."_s);
        ASSERT_TRUE(hasKeyboard(u"New Project"_s));
    }

    // A key that is to do nothing has been handled, and what might have followed from it as well.
    void pressInVain(const QString &key)
    {
        Desktop::key(key);
        drain();
    }
};

} // namespace

TEST_F(UndoWindowTest, CtrlZTakesBackAMoveByThePickerAndCtrlShiftZMakesItAgain)
{
    openSorted({"kitchen 1", "dark 2", "dark 3"});
    (void)shown(u"2 clips Binnacle wasn't sure about"_s);
    choose(u"Bin of dark 2.mov"_s, u"Bathroom"_s);
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    Desktop::key(u"ctrl+z"_s);
    (void)shown(u"2 clips Binnacle wasn't sure about"_s);
    EXPECT_EQ(binOf(u"dark 2"_s), unsortedBin());
    Desktop::key(u"ctrl+shift+z"_s);
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    EXPECT_EQ(binOf(u"dark 2"_s), u"Bathroom"_s);
}

TEST_F(UndoWindowTest, UndoingAConfirmAllShowsTheReviewAgainAndTheKeyboardGoesOnThere)
{
    openSorted({"kitchen 1", "dark 2", "dark 3"});
    Desktop::click(shown(u"Confirm All"_s));
    ASSERT_TRUE(goes(u"Needs a look"_s));
    Desktop::key(u"ctrl+z"_s);
    (void)shown(u"2 clips Binnacle wasn't sure about"_s);
    Desktop::key(u"c"_s);
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
}

TEST_F(UndoWindowTest, TheMenuSaysWhatItUndoesAndIsDimWhenThereIsNothing)
{
    openSorted({"kitchen 1", "kitchen 2"});
    openMenu();
    EXPECT_FALSE(shown(u"Undo"_s).isEnabled());
    EXPECT_FALSE(shown(u"Redo"_s).isEnabled());
    closeMenu();
    move(u"kitchen 1"_s, u"Bathroom"_s);
    openMenu();
    EXPECT_FALSE(shown(u"Redo"_s).isEnabled());
    Desktop::click(shown(u"Undo Move to Bathroom"_s));
    EXPECT_TRUE(isFiled(u"kitchen 1"_s, u"Kitchen"_s));
    ASSERT_TRUE(goes(u"Preferences…"_s));
    openMenu();
    EXPECT_FALSE(shown(u"Undo"_s).isEnabled());
    Desktop::click(shown(u"Redo Move to Bathroom"_s));
    EXPECT_TRUE(isFiled(u"kitchen 1"_s, u"Bathroom"_s));
    ASSERT_TRUE(goes(u"Preferences…"_s));
}

TEST_F(UndoWindowTest, ATextFieldUndoesItsOwnText)
{
    openSorted({"kitchen 1", "kitchen 2"});
    move(u"kitchen 1"_s, u"Bathroom"_s);
    openSwitcher();
    Desktop::click(shown(u"Rename"_s));
    ASSERT_TRUE(waitUntil([this] {
        const QQuickItem *field = window->activeFocusItem();
        return field != nullptr && field->property("selectedText").toString() == shoot.lastPathComponent();
    }));
    Desktop::key(u"V"_s);
    ASSERT_TRUE(hasKeyboard(u"V"_s));
    const QPointer field = window->activeFocusItem();
    Desktop::key(u"ctrl+z"_s);
    ASSERT_TRUE(waitUntil([&] { return field->property("text").toString() != u"V"_s; }));
    Desktop::key(u"ctrl+shift+z"_s);
    ASSERT_TRUE(waitUntil([&] { return field->property("text").toString() == u"V"_s; }));
    drain();
    EXPECT_EQ(binOf(u"kitchen 1"_s), u"Bathroom"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Save name"_s));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"New Project"_s));
    Desktop::key(u"ctrl+z"_s);
    EXPECT_TRUE(isFiled(u"kitchen 1"_s, u"Kitchen"_s));
}

TEST_F(UndoWindowTest, InThePreviewCtrlZUndoesWhatWasChangedThere)
{
    openSorted({"kitchen 1", "kitchen 2"});
    Desktop::click(shown(u"kitchen 2"_s));
    (void)shown(u"Done"_s);
    choose(u"Bin"_s, u"Bathroom"_s);
    ASSERT_TRUE(isFiled(u"kitchen 2"_s, u"Bathroom"_s));
    const QQuickItem &bin = control(u"Bin"_s);
    Desktop::key(u"ctrl+z"_s);
    EXPECT_TRUE(isFiled(u"kitchen 2"_s, u"Kitchen"_s));
    EXPECT_TRUE(waitUntil([&] { return bin.property("shownLabel").toString() == u"Kitchen"_s; }));
    EXPECT_TRUE(engine.hasPreview());
    Desktop::key(u"ctrl+shift+z"_s);
    EXPECT_TRUE(isFiled(u"kitchen 2"_s, u"Bathroom"_s));
    EXPECT_TRUE(waitUntil([&] { return bin.property("shownLabel").toString() == u"Bathroom"_s; }));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Done"_s));
    Desktop::key(u"ctrl+z"_s);
    EXPECT_TRUE(isFiled(u"kitchen 2"_s, u"Kitchen"_s));
}

TEST_F(UndoWindowTest, TheListOfProjectsKeepsItsOwnUndo)
{
    openSorted({"kitchen 1", "kitchen 2"});
    move(u"kitchen 1"_s, u"Bathroom"_s);
    openSwitcher();
    Desktop::click(shown(u"Remove from recents"_s));
    ASSERT_TRUE(waitUntil([this] { return engine.projects().empty(); }));
    (void)shown(u"Undo"_s);
    Desktop::key(u"ctrl+z"_s);
    ASSERT_TRUE(waitUntil([this] { return engine.projects().size() == 1; }));
    pressInVain(u"ctrl+z"_s); // nothing is left to put back, and the list is still open
    EXPECT_EQ(binOf(u"kitchen 1"_s), u"Bathroom"_s);
}

TEST_F(UndoWindowTest, BelowPreferencesNothingIsUndone)
{
    openSorted({"kitchen 1", "kitchen 2"});
    move(u"kitchen 1"_s, u"Bathroom"_s);
    Desktop::key(u"ctrl+comma"_s);
    (void)shown(u"Binnacle Preferences"_s);
    pressInVain(u"ctrl+z"_s);
    EXPECT_EQ(binOf(u"kitchen 1"_s), u"Bathroom"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));
    Desktop::key(u"ctrl+z"_s);
    EXPECT_TRUE(isFiled(u"kitchen 1"_s, u"Kitchen"_s));
}

TEST_F(UndoWindowTest, NothingIsUndoneWhereItCouldNotBeSeen)
{
    openSorted({"kitchen 1", "kitchen 2"});
    move(u"kitchen 1"_s, u"Bathroom"_s);
    engine.exportEvent();
    (void)shown(u"Event created"_s);
    pressInVain(u"ctrl+z"_s);
    EXPECT_EQ(binOf(u"kitchen 1"_s), u"Bathroom"_s);
    openMenu();
    EXPECT_FALSE(shown(u"Undo"_s).isEnabled());
    closeMenu();
    Desktop::click(shown(u"Back to the Clips"_s));
    ASSERT_TRUE(goes(u"Event created"_s));
    app.closeTool();
    (void)shown(u"Open Binnacle"_s);
    pressInVain(u"ctrl+z"_s);
    EXPECT_EQ(binOf(u"kitchen 1"_s), u"Bathroom"_s);
    openMenu();
    EXPECT_FALSE(shown(u"Undo Move to Bathroom"_s).isEnabled());
    closeMenu();
    app.openTool(u"binnacle"_s);
    (void)shown(u"Bathroom"_s);
    Desktop::key(u"ctrl+z"_s);
    EXPECT_TRUE(isFiled(u"kitchen 1"_s, u"Kitchen"_s));
}
