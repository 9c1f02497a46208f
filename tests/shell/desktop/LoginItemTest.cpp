#include "shell/desktop/LoginItem.h"

#include <QtCore/QProcess>

#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;

namespace fs = std::filesystem;

TEST(LoginItem, IsADesktopFileThatComesAndGoes)
{
    const TempFolder folder;
    const fs::path autostart = folder / "config/autostart"; // neither is there yet
    const LoginItem item(autostart, "/opt/larkspan/bin/larkspan");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.setEnabled(true));
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(bytesOf(autostart / "larkspan.desktop"), "[Desktop Entry]\n"
                                                       "Type=Application\n"
                                                       "Name=Larkspan\n"
                                                       "Exec=\"/opt/larkspan/bin/larkspan\"\n"
                                                       "Icon=larkspan\n"
                                                       "Terminal=false\n");
    EXPECT_TRUE(item.setEnabled(false));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(fs::exists(autostart / "larkspan.desktop"));
    EXPECT_TRUE(item.setEnabled(false)); // it is gone already
}

TEST(LoginItem, QuotesAProgramWhoseNameMeansSomethingElseInACommand)
{
    const TempFolder folder;
    ASSERT_TRUE(LoginItem(folder.path(), R"(/opt/50% "new" $HOME\`a`/larkspan)").setEnabled(true));
    EXPECT_THAT(bytesOf(folder / "larkspan.desktop"),
                testing::HasSubstr(R"(Exec="/opt/50%% \\"new\\" \\$HOME\\\\\\`a\\`/larkspan")"
                                   "\n"));
}

TEST(LoginItem, IsOffWhereTheDesktopsOwnSettingsSwitchedItOff)
{
    for (const char *line : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
        const TempFolder folder;
        folder.write("larkspan.desktop", std::string("[Desktop Entry]\nType=Application\n") + line);
        const LoginItem item(folder.path(), "/usr/bin/larkspan");
        EXPECT_FALSE(item.isEnabled()) << line;
        EXPECT_TRUE(item.setEnabled(true));
        EXPECT_TRUE(item.isEnabled()) << line;
    }
}

TEST(LoginItem, IsOffWhereTheFileIsNoDesktopFile)
{
    const TempFolder folder;
    folder.write("larkspan.desktop", "garbage");
    EXPECT_FALSE(LoginItem(folder.path()).isEnabled());
    fs::remove(folder / "larkspan.desktop");
    fs::create_directory(folder / "larkspan.desktop");
    EXPECT_FALSE(LoginItem(folder.path()).isEnabled());
    EXPECT_FALSE(LoginItem(folder.path()).setEnabled(true));
}

TEST(LoginItem, SaysWhenTheFolderRefuses)
{
    const TempFolder folder;
    const LoginItem item(folder.path(), "/usr/bin/larkspan");
    fs::permissions(folder.path(),
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read | fs::perms::others_exec);
    {
        const Unprivileged user;
        EXPECT_FALSE(item.setEnabled(true));
        EXPECT_FALSE(item.isEnabled());
    }
    fs::permissions(folder.path(), fs::perms::owner_all);
}
