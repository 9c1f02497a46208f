// Preferences, by mouse and keyboard.
#include <array>
#include <map>

#include "tests/shell/ShellWindow.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

class PreferencesTest : public ShellWindowTest
{
protected:
    // The control at the end of the row with this label.
    QQuickItem &controlOf(const QString &label)
    {
        (void)shown(label);
        QQuickItem *row = findToggleRow(window->contentItem(), label);
        if (row == nullptr) {
            throw std::runtime_error("no control: " + label.toStdString());
        }
        return *row;
    }

    static QQuickItem *findField(QQuickItem *root)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->isVisible() && child->property("placeholderText") == u"My Account"_s) {
                return child;
            }
            if (QQuickItem *found = findField(child)) {
                return found;
            }
        }
        return nullptr;
    }

    static QQuickItem *findToggleRow(QQuickItem *root, const QString &label)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->isVisible() && child->property("label") == label && child->property("isOn").isValid() &&
                child->property("sublabel").isNull()) {
                return child;
            }
            if (QQuickItem *found = findToggleRow(child, label)) {
                return found;
            }
        }
        return nullptr;
    }
};

} // namespace

TEST_F(PreferencesTest, OpenOnSortingInTheSortToolAndHoldEachChangeAtOnce)
{
    open();
    Desktop::key(u"ctrl+comma"_s);
    (void)shown(u"Binnacle Preferences"_s);
    (void)shown(u"Changes apply to the next sort."_s);
    Desktop::click(controlOf(u"Split repeated rooms"_s));
    EXPECT_TRUE(waitUntil([this] { return !engine.options().splitRepeatedRooms; }));
    EXPECT_EQ(store.boolean(u"lkSplitRooms"_s), false);
    EXPECT_EQ(store.boolean(u"lkOpenPlan"_s), true); // all keys, whichever changed
    // The sheet's: the footer below has one too.
    Desktop::click(*findShown(shown(u"Binnacle Preferences"_s).parentItem(), u"Cloud AI"_s));
    EXPECT_TRUE(waitUntil([this] { return engine.modelTier() == ModelTier::cloud; }));
    EXPECT_EQ(store.string(u"modelTier"_s), u"cloud"_s);
    (void)shown(u"Sends a few downscaled still frames to a vision model. Much better on hard shots — doorways, open "
                "plan, staged vs. empty rooms. Source footage never leaves this Mac."_s);
}

namespace {

struct ToggleRow
{
    const char16_t *tab;
    const char16_t *label;
    const char16_t *detail; // empty for none
    const char16_t *key;
    bool isOnAtFirst;
};

constexpr std::array toggleRows{
    ToggleRow{u"General", u"Reopen the last shoot on launch",
              u"Picks up where you left off instead of the drop target.", u"lkReopenLast", false},
    ToggleRow{u"General", u"Check for updates automatically", u"", u"lkCheckForUpdates", true},
    ToggleRow{u"General", u"Boring Mode",
              u"Turns off the background warp, cursor glow, and other animation — lighter on an older Mac.",
              u"lkBoringMode", false},
    ToggleRow{u"General", u"Sound Effects",
              u"Few and subtle: an intro chime, and a completion cue when a sort finishes.", u"lkSoundEnabled", true},
    ToggleRow{u"Sorting", u"Show clip counts in the sidebar", u"Off gives you a quieter bin list.", u"lkShowClipCounts",
              true},
    ToggleRow{u"Sorting", u"Send unsure clips to Needs a look", u"Off files them by best guess and never asks.",
              u"lkSendUnsure", true},
    ToggleRow{u"Sorting", u"Split repeated rooms", u"Kitchen 1 and Kitchen 2 rather than one crowded bin.",
              u"lkSplitRooms", true},
    ToggleRow{u"Sorting", u"Tag open-plan shots twice", u"A dining shot that shows the kitchen lands in both.",
              u"lkOpenPlan", true},
    ToggleRow{u"Sorting", u"Keep drone clips out of room bins", u"Aerials stay in Aerial / Drone and nowhere else.",
              u"lkDroneExclusive", true},
    ToggleRow{u"Import", u"Open the editor after export",
              u"Hands the event straight to Final Cut. Clip aspect ratios are never changed, and the timeline is left "
              u"for Final Cut to set from your first clip.",
              u"lkOpenEditor", true},
    ToggleRow{u"Import", u"Write the event file next to the footage",
              u"Off writes it to your Documents folder instead.", u"lkWriteNextTo", true},
};

// The value of every switch, by its key, as another start of the program would read it.
std::map<QString, bool> switchesIn(const SettingsStore &store)
{
    std::map<QString, bool> values;
    for (const ToggleRow &row : toggleRows) {
        const QString key = QString::fromUtf16(row.key);
        values[key] = store.boolean(key).value_or(row.isOnAtFirst);
    }
    return values;
}

} // namespace

TEST_F(PreferencesTest, EachSwitchChangesItsOwnSettingAndNoOther)
{
    open();
    app.openPreferences();
    for (const ToggleRow &row : toggleRows) {
        const QString label = QString::fromUtf16(row.label);
        app.setProperty("preferencesTab", QString::fromUtf16(row.tab));
        QQuickItem &toggle = controlOf(label);
        EXPECT_EQ(toggle.property("isOn"), row.isOnAtFirst) << label.toStdString();
        if (const QString detail = QString::fromUtf16(row.detail); !detail.isEmpty()) {
            EXPECT_TRUE(isShown(detail)) << label.toStdString();
        }
        auto expected = switchesIn(store);
        bool &value = expected[QString::fromUtf16(row.key)];
        for (const bool on : {!row.isOnAtFirst, row.isOnAtFirst}) {
            value = on;
            Desktop::click(toggle);
            EXPECT_TRUE(waitUntil([&] { return toggle.property("isOn") == on; })) << label.toStdString();
            EXPECT_TRUE(waitUntil([&] { return switchesIn(store) == expected; })) << label.toStdString();
        }
    }
}

TEST_F(PreferencesTest, TheShootsFoldersWholePathIsToldWhereThereIsNoRoomForIt)
{
    const QString shoots = u"/media/shoots/2026 and everything that is still to be delivered"_s;
    open();
    engine.setImportRoot(FileUrl(shoots.toStdString()));
    app.openPreferences();
    app.setProperty("preferencesTab", u"Import"_s);
    QQuickItem &path = shown(shoots);
    EXPECT_TRUE(path.property("truncated").toBool());
    Desktop::moveTo(path);
    EXPECT_TRUE(waitUntil([&] { return isTold(path); }));
}

TEST_F(PreferencesTest, TheListOfADropdownOpensAboveThem)
{
    open();
    app.openPreferences();
    app.setProperty("preferencesTab", u"Import"_s);
    Desktop::click(shown(fileHandlingLabel(FileHandling::inPlace)));
    Desktop::click(shown(fileHandlingLabel(FileHandling::copy)));
    EXPECT_TRUE(waitUntil([this] { return engine.options().fileHandling == FileHandling::copy; }));
}

TEST_F(PreferencesTest, OpenOnGeneralFromTheLauncher)
{
    open();
    app.closeTool();
    ASSERT_TRUE(waitUntil([this] { return app.view() == AppState::ViewMode::Landing; }));
    Desktop::key(u"ctrl+comma"_s);
    (void)shown(u"Larkspan Preferences"_s);
    (void)shown(u"Settings apply across every tool."_s);
    (void)shown(u"Version 1.0 (build 7) · Sort model 1.0"_s);
    Desktop::click(shown(u"Light"_s));
    EXPECT_TRUE(waitUntil([this] { return app.theme() == LK::Theme::Light; }));
    EXPECT_EQ(store.string(u"lkAppearance"_s), u"light"_s);
}

TEST_F(PreferencesTest, OpenedWhileAPlaceholderToolIsOpenShowGeneral)
{
    open();
    app.openTool(u"huelock"_s);
    (void)shown(u"Tell me when it ships"_s);
    Desktop::key(u"ctrl+comma"_s);
    (void)shown(u"Larkspan Preferences"_s);
    (void)shown(u"Launch Larkspan at login"_s);
}

TEST_F(PreferencesTest, WithPremiereAsTheTargetExportIsGreyedOutAndSortAgainIsNot)
{
    open();
    sort();
    app.openPreferences();
    Desktop::click(shown(u"Import"_s));
    (void)shown(u"Final Cut and Resolve read FCPXML. Premiere needs XMEML — not written yet."_s);
    choose(u"Send to"_s, u"Premiere Pro — soon"_s);
    EXPECT_EQ(engine.target(), NLE::premiere);
    EXPECT_EQ(store.string(u"defaultNLE"_s), u"premiere"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));
    EXPECT_FALSE(shown(u"Export"_s).isEnabled());
    EXPECT_EQ(shown(u"Export"_s).opacity(), 0.45);
    EXPECT_TRUE(shown(u"Sort Again"_s).isEnabled());
    Desktop::click(shown(u"Export"_s));
    drain();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    bool works = false;
    QObject::connect(&engine, &SortEngine::stageChanged, &engine,
                     [&] { works = works || engine.stage().kind == StageKind::working; });
    Desktop::click(shown(u"Sort Again"_s));
    EXPECT_TRUE(waitUntil([&] { return works; }));
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(PreferencesTest, TheFileHandlingIsChosenAndStoredAndACardImportExplainsWhyNothingStaysInPlace)
{
    open();
    app.openPreferences();
    Desktop::click(shown(u"Import"_s));
    (void)shown(u"Copy or move physically organizes footage into per-room folders at export. Leave in place only "
                "touches the FCPXML."_s);
    choose(u"File handling"_s, u"Move into folders"_s);
    EXPECT_EQ(engine.options().fileHandling, FileHandling::move);
    EXPECT_EQ(store.string(u"lkFileHandling"_s), u"move"_s);
    choose(u"File handling"_s, u"Leave in place"_s);
    engine.setImportRoot(FileUrl(desk.path()));
    engine.importCard(shoot, u"CARD"_s);
    (void)shown(u"Leave in place isn't available for an SD-card import — there's nowhere to leave it once the card's "
                "ejected."_s);
    EXPECT_EQ(control(u"File handling"_s).property("shownLabel"), u"Copy into folders"_s);
}

TEST_F(PreferencesTest, EscapeClosesAnOpenListAndThenTheSheetThatItIsIn)
{
    open();
    app.openPreferences();
    Desktop::click(shown(u"Import"_s));
    Desktop::click(control(u"Send to"_s));
    const auto *list = control(u"Send to"_s).property("popup").value<QObject *>();
    ASSERT_TRUE(waitUntil([&] { return list->property("opened").toBool(); }));
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([&] { return !list->property("visible").toBool(); }));
    EXPECT_EQ(app.property("showPreferences"), true);
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
}

TEST_F(PreferencesTest, ArrowsWalkTheTabsAndShowThem)
{
    open();
    app.openPreferences();
    ASSERT_TRUE(hasKeyboard(u"Sorting"_s));
    Desktop::key(u"Up"_s);
    ASSERT_TRUE(hasKeyboard(u"Account"_s));
    EXPECT_EQ(app.preferencesTab(), u"Account"_s);
    Desktop::key(u"Up"_s);
    ASSERT_TRUE(hasKeyboard(u"General"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(hasKeyboard(u"Account"_s));
    EXPECT_EQ(app.preferencesTab(), u"Account"_s);
}

TEST_F(PreferencesTest, ATabThatIsUnknownShowsGeneral)
{
    open();
    app.openPreferences();
    app.setProperty("preferencesTab", u"Nonsense"_s);
    (void)shown(u"Sound Effects"_s);
}

TEST_F(PreferencesTest, GoWithTheirCloseControlOrAPressOnTheScrimAndStayForOneOnTheSheet)
{
    open();
    app.openPreferences();
    QQuickItem &title = shown(u"Binnacle Preferences"_s);
    Desktop::click(title);
    drain();
    EXPECT_EQ(app.property("showPreferences"), true);
    const QPoint scrim = window->mapToGlobal(QPoint(60, 700));
    Desktop::drag(scrim, scrim);
    EXPECT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));
}

TEST_F(PreferencesTest, LaunchAtLoginGoesThroughTheDesktopAndARefusalSnapsTheToggleBack)
{
    open();
    app.openPreferences();
    app.setProperty("preferencesTab", u"General"_s);
    QQuickItem &toggle = controlOf(u"Launch Larkspan at login"_s);
    Desktop::click(toggle);
    EXPECT_TRUE(waitUntil([this] { return fs::exists(desk / "autostart/larkspan.desktop"); }));
    EXPECT_EQ(toggle.property("isOn"), true);
    Desktop::click(toggle);
    EXPECT_TRUE(waitUntil([this] { return !fs::exists(desk / "autostart/larkspan.desktop"); }));
    EXPECT_EQ(toggle.property("isOn"), false);

    fs::permissions(desk / "autostart",
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read | fs::perms::others_exec);
    int changes = 0;
    QObject::connect(&app, &AppState::launchAtLoginChanged, [&changes] { ++changes; });
    {
        const Unprivileged user;
        Desktop::click(toggle);
        EXPECT_TRUE(waitUntil([&changes] { return changes == 2; }));
    }
    fs::permissions(desk / "autostart", fs::perms::owner_all);
    EXPECT_EQ(toggle.property("isOn"), false);
    EXPECT_FALSE(app.launchAtLogin());
}

TEST_F(PreferencesTest, TheShootsFolderReadsNotSetUntilItIsChosen)
{
    open();
    app.openPreferences();
    app.setProperty("preferencesTab", u"Import"_s);
    (void)shown(u"Not set"_s);
    folderToChoose = FileUrl(desk.path());
    Desktop::click(shown(u"Choose…"_s));
    EXPECT_TRUE(waitUntil([this] { return engine.importRoot() == FileUrl(desk.path()); }));
    (void)shown(QString::fromStdString(desk.path().string()));
}

TEST_F(PreferencesTest, EverySettingIsInSightInTheSmallestWindowWhereverItSays)
{
    open();
    app.openPreferences();
    window->resize(window->minimumSize());
    engine.setModelTier(ModelTier::cloud); // the longer text
    for (const QString &tab : {u"General"_s, u"Account"_s, u"Sorting"_s, u"Import"_s}) {
        app.setProperty("preferencesTab", tab);
        const QQuickItem *body = nullptr;
        ASSERT_TRUE(waitUntil([&] {
            body = findNamed(window->contentItem(), u"preferencesBody"_s);
            return body && body->property("contentHeight").toDouble() > 0;
        }));
        EXPECT_LE(body->property("contentHeight").toDouble(), body->height()) << tab.toStdString();
    }
}

TEST_F(PreferencesTest, TheAccountNameIsStoredAsItIsWritten)
{
    open();
    app.openPreferences();
    app.setProperty("preferencesTab", u"Account"_s);
    QQuickItem *field = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (field = findField(window->contentItem())) != nullptr; }));
    drain();
    Desktop::click(*field);
    ASSERT_TRUE(waitUntil([&] { return field->hasActiveFocus(); }));
    Desktop::key(u"ctrl+a"_s);
    Desktop::key(u"V"_s);
    EXPECT_TRUE(waitUntil([this] { return store.string(u"lkAccountName"_s) == u"V"_s; }));
}
