#include "shell/window/AppState.h"

#include <memory>

#include <gmock/gmock.h>
#include <QtCore/QMetaProperty>
#include <QtTest/QSignalSpy>

#include "tests/support/TempFolder.h"

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

    // Returns the settings that another start of the program would find.
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

TEST_F(AppStateTest, EveryChangeOfItsPartsIsHandedOn)
{
    const auto app = launch();
    const std::map<QByteArray, QVariant> others{
        {"toolIndex", 2},
        {"dragX", 12.5},
        {"appearance", QVariant::fromValue(LK::Appearance::AlwaysLight)},
        {"showPreferences", true},
        {"preferencesTab", u"Import"_s},
        {"shipOpen", true},
        {"shipEmail", u"a@b.c"_s},
        {"shipSent", true},
        {"reopenLastShoot", true},
        {"accountName", u"Vega"_s},
        {"boringMode", true},
        {"launchAtLogin", true},
        {"checkForUpdatesAutomatically", false},
        {"soundEnabled", false},
    };
    const QMetaObject &type = AppState::staticMetaObject;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        if (!property.isWritable()) {
            continue;
        }
        ASSERT_TRUE(others.contains(property.name())) << property.name();
        QSignalSpy told(app.get(), property.notifySignal());
        const QVariant other = others.at(property.name());
        EXPECT_NE(property.read(app.get()), other) << property.name();
        EXPECT_TRUE(property.write(app.get(), other));
        EXPECT_EQ(property.read(app.get()), other) << property.name();
        EXPECT_EQ(told.count(), 1) << property.name();
    }
}

TEST_F(AppStateTest, ThePlaceInTheProgramIsHandedOn)
{
    const auto app = launch();
    QStringList told;
    QObject::connect(app.get(), &AppState::phaseChanged, [&told] { told.push_back(u"phase"_s); });
    QObject::connect(app.get(), &AppState::viewChanged, [&told] { told.push_back(u"view"_s); });
    QObject::connect(app.get(), &AppState::toolIDChanged, [&told] { told.push_back(u"tool"_s); });
    QObject::connect(app.get(), &AppState::closingChanged, [&told] { told.push_back(u"closing"_s); });
    QObject::connect(app.get(), &AppState::themeChanged, [&told] { told.push_back(u"theme"_s); });
    app->finishIntro();
    EXPECT_EQ(app->phase(), AppState::Phase::App);
    app->openTool(u"huelock"_s);
    app->closeTool();
    EXPECT_TRUE(app->closing());
    app->setAppearance(LK::Appearance::AlwaysLight);
    EXPECT_THAT(told, ElementsAre(u"phase"_s, u"tool"_s, u"view"_s, u"closing"_s, u"theme"_s));
}
