#include "shell/preferences/AppPreferences.h"

#include <gmock/gmock.h>

#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace {

class AppPreferencesTest : public testing::Test
{
protected:
    AppPreferences launch()
    {
        return AppPreferences(store, LoginItem(autostart, "/usr/bin/larkspan"),
                              [this](bool enabled) { sound.push_back(enabled); });
    }

    const TempFolder folder;
    const std::filesystem::path autostart = folder / "autostart";
    SettingsStore store{QString::fromStdString((folder / "settings.ini").string())};
    std::vector<bool> sound; // calls of the sound engine
};

} // namespace

TEST_F(AppPreferencesTest, AnEmptyAccountNameIsKept)
{
    launch().setAccountName(QString());
    EXPECT_EQ(launch().accountName(), QString());
}

TEST_F(AppPreferencesTest, LaunchAtLoginGoesThroughTheDesktopAndBack)
{
    AppPreferences preferences = launch();
    preferences.setLaunchAtLogin(true);
    EXPECT_TRUE(LoginItem(autostart).isEnabled());
    preferences.setLaunchAtLogin(false);
    EXPECT_FALSE(LoginItem(autostart).isEnabled());
    EXPECT_FALSE(preferences.launchAtLogin());
}

TEST_F(AppPreferencesTest, LaunchAtLoginSnapsBackWhenTheDesktopRefuses)
{
    namespace fs = std::filesystem;
    AppPreferences preferences = launch();
    fs::create_directory(autostart);
    fs::permissions(autostart,
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read | fs::perms::others_exec);
    std::vector<bool> shown;
    QObject::connect(&preferences, &AppPreferences::launchAtLoginChanged,
                     [&] { shown.push_back(preferences.launchAtLogin()); });
    {
        const Unprivileged user;
        preferences.setLaunchAtLogin(true);
    }
    fs::permissions(autostart, fs::perms::owner_all);
    EXPECT_THAT(shown, ElementsAre(true, false));
    EXPECT_FALSE(preferences.launchAtLogin());
}

TEST_F(AppPreferencesTest, TurningSoundOffAndOnTellsTheSoundEngine)
{
    AppPreferences preferences = launch();
    preferences.setSoundEnabled(false);
    preferences.setSoundEnabled(false);
    preferences.setSoundEnabled(true);
    EXPECT_THAT(sound, ElementsAre(false, true));
}
