// Keys that are held and presses that come twice, by a real display's own repeating.
#include "core/bins/RoomLabel.h"
#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class InputGuardTest : public ShellWindowTest
{
protected:
    static constexpr int enough = 6; // repeats

    void sortShoots(std::initializer_list<const char *> names)
    {
        for (const char *name : names) {
            (void)folder.write(std::filesystem::path(name) / "pool 1.mov");
            engine.sortFolder(FileUrl(folder / name));
            ASSERT_TRUE(reaches(engine, StageKind::working));
            ASSERT_TRUE(reaches(engine, StageKind::results));
        }
    }

    void openSwitcher()
    {
        Desktop::click(shown(u"Projects"_s));
        ASSERT_TRUE(hasKeyboard(u"New Project"_s));
    }

    void send(QEvent::Type type, Qt::Key key, quint64 time)
    {
        QKeyEvent event(type, key, Qt::NoModifier, key == Qt::Key_Space ? u" "_s : u"c"_s);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(window, &event);
    }

    // A click as of a hand, at a time in milliseconds.
    void click(QPointF place, quint64 time)
    {
        for (const auto &[type, buttons] : {std::pair(QEvent::MouseButtonPress, Qt::LeftButton),
                                            std::pair(QEvent::MouseButtonRelease, Qt::NoButton)}) {
            QMouseEvent event(type, place, window->mapToGlobal(place), Qt::LeftButton, buttons, Qt::NoModifier);
            event.setTimestamp(time);
            QCoreApplication::sendEvent(window, &event);
        }
    }

    // A key that is held, where Qt marks none of the repeats.
    void holdUnmarked(Qt::Key key)
    {
        send(QEvent::KeyPress, key, 1);
        for (const quint64 time : {2, 3}) {
            send(QEvent::KeyRelease, key, time);
            send(QEvent::KeyPress, key, time);
        }
        send(QEvent::KeyRelease, key, 5);
    }

    std::vector<QString> projects() const
    {
        std::vector<QString> names;
        std::ranges::transform(engine.projects(), std::back_inserter(names), &ProjectSummary::name);
        return names;
    }
};

} // namespace

TEST_F(InputGuardTest, DeleteThatIsHeldRemovesOneProjectAndUndoPutsItBack)
{
    open();
    sortShoots({"first", "second", "third", "fourth"});
    const auto before = projects();
    openSwitcher();
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"fourth"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"third"_s));
    Desktop::hold(u"Delete"_s, enough);
    EXPECT_TRUE(hasKeyboard(u"second"_s));
    EXPECT_THAT(engine.projects(), SizeIs(3));
    (void)shown(u"Removed third"_s);
    Desktop::key(u"ctrl+z"_s);
    EXPECT_TRUE(hasKeyboard(u"third"_s));
    EXPECT_EQ(projects(), before);
    EXPECT_FALSE(isShown(u"Removed third"_s));

    Desktop::key(u"Delete"_s);
    (void)shown(u"Removed third"_s);
    Desktop::click(shown(u"Undo"_s));
    EXPECT_TRUE(hasKeyboard(u"third"_s));
    EXPECT_EQ(projects(), before);
}

TEST_F(InputGuardTest, WhatWasRemovedIsOfferedUntilTheSwitcherCloses)
{
    open();
    sortShoots({"first"});
    openSwitcher();
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"first"_s));
    Desktop::key(u"Delete"_s);
    (void)shown(u"Removed first"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"New Project"_s));
    openSwitcher();
    EXPECT_FALSE(isShown(u"Undo"_s));
    EXPECT_THAT(engine.projects(), IsEmpty());
}

TEST_F(InputGuardTest, ReturnThatIsHeldInAProjectsNameRenamesAndOpensNothing)
{
    open();
    sortShoots({"first", "second"});
    openSwitcher();
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"second"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"first"_s));
    Desktop::key(u"F2"_s);
    ASSERT_TRUE(waitUntil([this] { return window->activeFocusItem()->property("selectedText") == u"first"_s; }));
    Desktop::key(u"V"_s);
    ASSERT_TRUE(hasKeyboard(u"V"_s));
    Desktop::hold(u"Return"_s, enough);
    EXPECT_EQ(engine.projects().back().name, u"V"_s);
    EXPECT_TRUE(isShown(u"New Project"_s));
    EXPECT_EQ(engine.folder(), FileUrl(folder / "second"));
}

TEST_F(InputGuardTest, TheKeyThatConfirmsConfirmsOneClipHoweverLongItIsHeld)
{
    open();
    makeClips({"kitchen 1", "dark 2", "dark 3", "dark 4"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    (void)shown(u"3 clips Binnacle wasn't sure about"_s);
    QQuickItem *list = findNamed(window->contentItem(), u"review"_s);
    ASSERT_NE(list, nullptr);
    list->forceActiveFocus();
    ASSERT_TRUE(waitUntil([list] { return list->hasActiveFocus(); }));
    Desktop::hold(u"c"_s, enough);
    EXPECT_EQ(engine.reviewCount(), 2);
}

TEST_F(InputGuardTest, ABlankThatIsHeldOnAButtonPressesItOnce)
{
    open();
    app.openPreferences();
    (void)shown(u"Split repeated rooms"_s);
    int changes = 0;
    QObject::connect(&engine, &SortEngine::optionsChanged, &engine, [&changes] { ++changes; });
    QQuickItem *toggle = findLabelled(window->contentItem(), u"Split repeated rooms"_s);
    ASSERT_NE(toggle, nullptr);
    toggle->forceActiveFocus();
    Desktop::hold(u"space"_s, enough);
    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
    drain();
    EXPECT_EQ(changes, 1);
}

TEST_F(InputGuardTest, ARepeatThatIsNotMarkedAsOneIsKnownByItsTime)
{
    open();
    makeClips({"kitchen 1", "dark 2", "dark 3", "dark 4"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    (void)shown(u"3 clips Binnacle wasn't sure about"_s);
    QQuickItem *list = findNamed(window->contentItem(), u"review"_s);
    list->forceActiveFocus();
    holdUnmarked(Qt::Key_C);
    EXPECT_EQ(engine.reviewCount(), 2);
    send(QEvent::KeyPress, Qt::Key_C, 6); // by hand again
    EXPECT_EQ(engine.reviewCount(), 1);
    send(QEvent::KeyRelease, Qt::Key_C, 7);

    app.openPreferences();
    (void)shown(u"Split repeated rooms"_s);
    int changes = 0;
    QObject::connect(&engine, &SortEngine::optionsChanged, &engine, [&changes] { ++changes; });
    findLabelled(window->contentItem(), u"Split repeated rooms"_s)->forceActiveFocus();
    holdUnmarked(Qt::Key_Space);
    EXPECT_EQ(changes, 1);
    send(QEvent::KeyPress, Qt::Key_Space, 8);
    send(QEvent::KeyRelease, Qt::Key_Space, 9);
    EXPECT_EQ(changes, 2);
}

TEST_F(InputGuardTest, ReturnThatIsHeldOnBackLeadsToTheLauncherAndStaysThere)
{
    open();
    QQuickItem &back = shown(u"Back to Larkspan"_s);
    back.forceActiveFocus(Qt::TabFocusReason);
    int openings = 0;
    QObject::connect(&app, &AppState::viewChanged, &app, [&] { openings += app.view() == AppState::ViewMode::Tool; });
    Desktop::hold(u"Return"_s, 30); // beyond the tool's leaving
    EXPECT_TRUE(waitUntil([this] { return app.view() == AppState::ViewMode::Landing; }));
    drain();
    EXPECT_EQ(openings, 0);
}

TEST_F(InputGuardTest, KeysThatMoveOrWriteRepeat)
{
    open();
    makeClips({"kitchen 1", "pool 2", "garage 3", "office 4"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const auto bins = engine.binCounts();
    ASSERT_GE(bins.size(), 3U);
    engine.setSelectedBin(bins.front().bin);
    (void)shown(bins.back().bin);
    Desktop::hold(u"Down"_s, enough);
    EXPECT_EQ(engine.selectedBin(), bins.back().bin);

    app.openPreferences();
    app.setProperty("preferencesTab", u"Account"_s);
    QQuickItem *field = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (field = findLabelled(window->contentItem(), u"Account name"_s)) != nullptr; }));
    app.setAccountName(QString());
    field->forceActiveFocus();
    ASSERT_TRUE(waitUntil([&] { return field->hasActiveFocus(); }));
    Desktop::hold(u"v"_s, enough);
    EXPECT_TRUE(app.accountName().startsWith(u"vvv"_s)) << app.accountName().toStdString();
}

TEST_F(InputGuardTest, ADoubleClickOnAToolOpensItAndPressesNothingInIt)
{
    openInIntro();
    app.finishIntro();
    const QQuickItem &card = shown(u"Open Binnacle"_s);
    const QPointF place = card.mapToScene(card.boundingRect().center());
    click(place, 1000);
    const QQuickItem &button = shown(u"Choose Folder"_s);
    ASSERT_TRUE(button.contains(button.mapFromScene(place)));
    click(place, 1200);
    EXPECT_THAT(panels, IsEmpty());
    EXPECT_TRUE(app.isSortToolOpen());
    click(place, 3000); // by itself
    EXPECT_THAT(panels, SizeIs(1));
}

TEST_F(InputGuardTest, ADoubleClickOnAnAnswerPressesNothingBelowTheQuestion)
{
    open();
    sort();
    startCopy();
    app.closeTool();
    (void)shown(u"Open Binnacle"_s);
    const QQuickItem *card = findNamed(window->contentItem(), u"card-binnacle"_s);
    window->close();
    const QQuickItem &answer = shown(u"Keep Open"_s);
    const QPointF place = answer.mapToScene(answer.boundingRect().center());
    ASSERT_TRUE(card->contains(card->mapFromScene(place)));
    click(place, 1000);
    ASSERT_TRUE(goes(u"Keep Open"_s));
    click(place, 1200);
    EXPECT_FALSE(app.isSortToolOpen());
    click(place, 3000); // by itself
    EXPECT_TRUE(app.isSortToolOpen());
    copying.open();
}

TEST_F(InputGuardTest, ADoubleClickOnAClipOpensItsPreviewAndLeavesItOpen)
{
    open();
    makeClips({"kitchen 1"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const QQuickItem *card = &shown(u"kitchen 1"_s);
    while (!card->property("primaryBin").isValid()) {
        card = card->parentItem();
    }
    const QPointF place = card->mapToScene(QPointF(10, 10)); // where the preview leaves the scrim free
    click(place, 1000);
    (void)shown(u"Play"_s);
    click(place, 1200);
    EXPECT_TRUE(engine.hasPreview());
    click(place, 3000);
    EXPECT_FALSE(engine.hasPreview());
}
