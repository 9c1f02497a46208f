#include "shell/window/AppState.h"

#include <memory>

#include "tests/shell/DesktopPortal.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {

class AppStateTest : public testing::Test
{
protected:
    std::unique_ptr<AppState> launch()
    {
        return std::make_unique<AppState>(store, system, LoginItem(autostart, "/usr/bin/larkspan"),
                                          [this](bool enabled) { sound.push_back(enabled); });
    }

    // Whether the launcher is yet to take the tool's place.
    static bool stillToClose(const AppState &app) { return app.findChild<QTimer *>()->isActive(); }

    // What another start of the program would find.
    SettingsStore reread() const { return SettingsStore(settingsFile()); }
    QString settingsFile() const { return QString::fromStdString((folder / "settings.ini").string()); }

    const TempFolder folder;
    const fs::path autostart = folder / "autostart";
    SettingsStore store{settingsFile()};
    SystemAppearance system;
    std::vector<bool> sound; // what the sound engine was told
};

} // namespace

TEST_F(AppStateTest, AFreshStoreGivesTheDefaults)
{
    const auto app = launch();
    EXPECT_EQ(app->phase(), AppState::Phase::Intro);
    EXPECT_EQ(app->view(), AppState::ViewMode::Landing);
    EXPECT_EQ(app->toolID(), u"binnacle"_s);
    EXPECT_FALSE(app->closing());
    EXPECT_EQ(app->property("toolIndex"), 0);
    EXPECT_EQ(app->property("dragX"), 0.0);
    EXPECT_EQ(app->appearance(), LK::Appearance::AlwaysDark);
    EXPECT_EQ(app->theme(), LK::Theme::Dark);
    EXPECT_EQ(app->palette(), LKPalette::dark());
    EXPECT_EQ(app->property("showPreferences"), false);
    EXPECT_EQ(app->property("preferencesTab"), u"General"_s);
    EXPECT_EQ(app->property("shipOpen"), false);
    EXPECT_EQ(app->property("shipEmail"), QString());
    EXPECT_EQ(app->property("shipSent"), false);
    EXPECT_FALSE(app->reopenLastShoot());
    EXPECT_EQ(app->accountName(), u"My Account"_s);
    EXPECT_FALSE(app->boringMode());
    EXPECT_FALSE(app->launchAtLogin());
    EXPECT_TRUE(app->checkForUpdatesAutomatically());
    EXPECT_TRUE(app->soundEnabled());
    EXPECT_THAT(sound, ElementsAre());
    EXPECT_FALSE(fs::exists(folder / "settings.ini")); // defaults aren't written back
}

TEST_F(AppStateTest, EverySettingIsStoredAsItChangesAndFoundAgain)
{
    {
        const auto app = launch();
        app->setAppearance(LK::Appearance::AlwaysLight);
        app->setReopenLastShoot(true);
        app->setAccountName(u"Vega & Söhne"_s);
        app->setBoringMode(true);
        app->setLaunchAtLogin(true);
        app->setCheckForUpdatesAutomatically(false);
        app->setSoundEnabled(false);
        EXPECT_THAT(sound, ElementsAre(false));
    }
    EXPECT_EQ(reread().string(u"lkAppearance"_s), u"light"_s);
    EXPECT_EQ(reread().boolean(u"lkReopenLast"_s), true);
    EXPECT_EQ(reread().string(u"lkAccountName"_s), u"Vega & Söhne"_s);
    EXPECT_EQ(reread().boolean(u"lkBoringMode"_s), true);
    EXPECT_EQ(reread().boolean(u"lkCheckForUpdates"_s), false);
    EXPECT_EQ(reread().boolean(u"lkSoundEnabled"_s), false);

    sound.clear();
    const auto again = launch();
    EXPECT_EQ(again->appearance(), LK::Appearance::AlwaysLight);
    EXPECT_EQ(again->theme(), LK::Theme::Light);
    EXPECT_EQ(again->palette(), LKPalette::light());
    EXPECT_TRUE(again->reopenLastShoot());
    EXPECT_EQ(again->accountName(), u"Vega & Söhne"_s);
    EXPECT_TRUE(again->boringMode());
    EXPECT_TRUE(again->launchAtLogin());
    EXPECT_FALSE(again->checkForUpdatesAutomatically());
    EXPECT_FALSE(again->soundEnabled());
    EXPECT_THAT(sound, ElementsAre(false)); // before any cue
}

TEST_F(AppStateTest, AnUnknownAppearanceStaysDarkAndIsLeftInTheStore)
{
    store.setString(u"lkAppearance"_s, u"sepia"_s);
    EXPECT_EQ(launch()->appearance(), LK::Appearance::AlwaysDark);
    EXPECT_EQ(store.string(u"lkAppearance"_s), u"sepia"_s);
}

TEST_F(AppStateTest, AnEmptyAccountNameIsKept)
{
    launch()->setAccountName(QString());
    EXPECT_EQ(launch()->accountName(), QString());
}

TEST_F(AppStateTest, OpeningAToolShowsItAndForgetsTheNotifyForm)
{
    const auto app = launch();
    app->setProperty("shipOpen", true);
    app->setProperty("shipEmail", u"a@b.c"_s);
    app->setProperty("shipSent", true);
    app->openTool(u"huelock"_s);
    EXPECT_EQ(app->view(), AppState::ViewMode::Tool);
    EXPECT_EQ(app->toolID(), u"huelock"_s);
    EXPECT_FALSE(app->isSortToolOpen());
    EXPECT_EQ(app->property("shipOpen"), false);
    EXPECT_EQ(app->property("shipEmail"), QString());
    EXPECT_EQ(app->property("shipSent"), false);
    app->openTool(u"binnacle"_s);
    EXPECT_TRUE(app->isSortToolOpen());
}

TEST_F(AppStateTest, WhetherTheSortToolIsOpenIsToldWhenTheViewOrTheToolChanges)
{
    const auto app = launch();
    std::vector<bool> told;
    QObject::connect(app.get(), &AppState::isSortToolOpenChanged, [&] { told.push_back(app->isSortToolOpen()); });
    app->openTool(u"binnacle"_s);
    EXPECT_THAT(told, ElementsAre(true));
    app->openTool(u"huelock"_s);
    EXPECT_THAT(told, ElementsAre(true, false));
}

TEST_F(AppStateTest, ClosingAToolLetsItLeaveBeforeTheLauncherComes)
{
    const auto app = launch();
    app->openTool(u"binnacle"_s);
    app->closeTool();
    EXPECT_TRUE(app->closing());
    EXPECT_EQ(app->findChild<QTimer *>()->intervalAsDuration(), AppState::closingTime);
    EXPECT_EQ(app->view(), AppState::ViewMode::Tool);
    const auto *timer = app->findChild<QTimer *>();
    EXPECT_EQ(timer->intervalAsDuration(), std::chrono::milliseconds(270));
    EXPECT_TRUE(timer->isSingleShot());
    EXPECT_TRUE(waitUntil([&] { return app->view() == AppState::ViewMode::Landing; }));
    EXPECT_FALSE(app->closing());
    EXPECT_FALSE(app->isSortToolOpen());
}

TEST_F(AppStateTest, ClosingAToolTwiceEndsInTheLauncherWithNothingClosing)
{
    const auto app = launch();
    app->openTool(u"binnacle"_s);
    app->closeTool();
    app->closeTool();
    EXPECT_TRUE(waitUntil([&] { return app->view() == AppState::ViewMode::Landing; }));
    EXPECT_FALSE(app->closing());
    EXPECT_FALSE(stillToClose(*app));
}

TEST_F(AppStateTest, AToolOpenedWhileAnotherClosesStaysOpen)
{
    const auto app = launch();
    app->openTool(u"huelock"_s);
    app->closeTool();
    app->openTool(u"binnacle"_s);
    EXPECT_FALSE(app->closing());
    EXPECT_FALSE(stillToClose(*app));
    EXPECT_TRUE(app->isSortToolOpen());
}

TEST_F(AppStateTest, AStateThatGoesWhileAToolClosesIsNotCalledBack)
{
    auto app = launch();
    app->closeTool();
    EXPECT_TRUE(stillToClose(*app));
    const QPointer closing = app->findChild<QTimer *>();
    app.reset();
    EXPECT_TRUE(closing.isNull());
}

TEST_F(AppStateTest, TheIntroEndsOnce)
{
    const auto app = launch();
    int changes = 0;
    QObject::connect(app.get(), &AppState::phaseChanged, [&changes] { ++changes; });
    app->finishIntro();
    app->finishIntro();
    EXPECT_EQ(app->phase(), AppState::Phase::App);
    EXPECT_EQ(changes, 1);
}

TEST_F(AppStateTest, PreferencesOpenOnSortingInTheSortToolAndOnGeneralElsewhere)
{
    const auto app = launch();
    const auto tabOf = [&app] {
        app->setProperty("showPreferences", false);
        app->openPreferences();
        EXPECT_EQ(app->property("showPreferences"), true);
        return app->property("preferencesTab").toString();
    };
    EXPECT_EQ(tabOf(), u"General"_s);
    app->openTool(u"binnacle"_s);
    EXPECT_EQ(tabOf(), u"Sorting"_s);
    app->openTool(u"earmark"_s); // a placeholder
    EXPECT_EQ(tabOf(), u"General"_s);
}

TEST_F(AppStateTest, PreferencesMayBeOpenedDuringTheIntro)
{
    const auto app = launch();
    app->openPreferences();
    EXPECT_EQ(app->phase(), AppState::Phase::Intro);
    EXPECT_EQ(app->property("showPreferences"), true);
}

TEST_F(AppStateTest, SystemAppearanceFollowsTheDesktopWithNoRestart)
{
    DesktopPortal portal(DesktopPortal::Dark);
    SystemAppearance desktop;
    AppState app(store, desktop, LoginItem(autostart), [](bool) {});
    app.setAppearance(LK::Appearance::FollowSystem);
    EXPECT_EQ(store.string(u"lkAppearance"_s), u"system"_s);
    EXPECT_TRUE(waitUntil([&] { return app.theme() == LK::Theme::Dark; }));
    portal.change(DesktopPortal::Light);
    EXPECT_TRUE(waitUntil([&] { return app.theme() == LK::Theme::Light; }));
    portal.change(DesktopPortal::Dark);
    EXPECT_TRUE(waitUntil([&] { return app.theme() == LK::Theme::Dark; }));
}

TEST_F(AppStateTest, ADarkAppearanceLeavesTheDesktopsChangeAlone)
{
    DesktopPortal portal(DesktopPortal::Dark);
    SystemAppearance desktop;
    const AppState app(store, desktop, LoginItem(autostart), [](bool) {});
    EXPECT_TRUE(waitUntil([&] { return desktop.isDark(); }));
    portal.change(DesktopPortal::Light);
    EXPECT_TRUE(waitUntil([&] { return !desktop.isDark(); }));
    EXPECT_EQ(app.theme(), LK::Theme::Dark);
}

TEST_F(AppStateTest, SystemAppearanceIsLightWithoutAPortal)
{
    const auto app = launch();
    app->setAppearance(LK::Appearance::FollowSystem);
    EXPECT_EQ(app->theme(), LK::Theme::Light);
}

TEST_F(AppStateTest, LaunchAtLoginGoesThroughTheDesktopAndBack)
{
    const auto app = launch();
    app->setLaunchAtLogin(true);
    EXPECT_TRUE(LoginItem(autostart).isEnabled());
    app->setLaunchAtLogin(false);
    EXPECT_FALSE(LoginItem(autostart).isEnabled());
    EXPECT_FALSE(app->launchAtLogin());
}

TEST_F(AppStateTest, LaunchAtLoginSnapsBackWhenTheDesktopRefuses)
{
    const auto app = launch();
    fs::create_directory(autostart);
    fs::permissions(autostart,
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read | fs::perms::others_exec);
    std::vector<bool> shown;
    QObject::connect(app.get(), &AppState::launchAtLoginChanged, [&] { shown.push_back(app->launchAtLogin()); });
    {
        const Unprivileged user;
        app->setLaunchAtLogin(true);
    }
    fs::permissions(autostart, fs::perms::owner_all);
    EXPECT_THAT(shown, ElementsAre(true, false));
    EXPECT_FALSE(app->launchAtLogin());
}

TEST_F(AppStateTest, TurningSoundOffAndOnTellsTheSoundEngine)
{
    const auto app = launch();
    app->setSoundEnabled(false);
    app->setSoundEnabled(false);
    app->setSoundEnabled(true);
    EXPECT_THAT(sound, ElementsAre(false, true));
}
