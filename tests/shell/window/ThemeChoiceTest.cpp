#include "shell/window/ThemeChoice.h"

#include "tests/shell/DesktopPortal.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class ThemeChoiceTest : public testing::Test
{
protected:
    const TempFolder folder;
    SettingsStore store{QString::fromStdString((folder / "settings.ini").string())};
    SystemAppearance noDesktop{QDBusConnection(u"a bus that is not there"_s)};
};

} // namespace

TEST_F(ThemeChoiceTest, AnUnknownAppearanceStaysDarkAndIsLeftInTheStore)
{
    store.setString(u"lkAppearance"_s, u"sepia"_s);
    EXPECT_EQ(ThemeChoice(store, noDesktop).appearance(), LK::Appearance::AlwaysDark);
    EXPECT_EQ(store.string(u"lkAppearance"_s), u"sepia"_s);
}

TEST_F(ThemeChoiceTest, ALightAppearanceIsStoredAndFoundAgain)
{
    ThemeChoice(store, noDesktop).setAppearance(LK::Appearance::AlwaysLight);
    EXPECT_EQ(store.string(u"lkAppearance"_s), u"light"_s);
    const ThemeChoice again(store, noDesktop);
    EXPECT_EQ(again.appearance(), LK::Appearance::AlwaysLight);
    EXPECT_EQ(again.theme(), LK::Theme::Light);
}

TEST_F(ThemeChoiceTest, SystemAppearanceFollowsTheDesktopWithNoRestart)
{
    DesktopPortal portal(DesktopPortal::Dark);
    SystemAppearance desktop;
    ThemeChoice choice(store, desktop);
    choice.setAppearance(LK::Appearance::FollowSystem);
    EXPECT_EQ(store.string(u"lkAppearance"_s), u"system"_s);
    EXPECT_TRUE(waitUntil([&] { return choice.theme() == LK::Theme::Dark; }));
    portal.change(DesktopPortal::Light);
    EXPECT_TRUE(waitUntil([&] { return choice.theme() == LK::Theme::Light; }));
    portal.change(DesktopPortal::Dark);
    EXPECT_TRUE(waitUntil([&] { return choice.theme() == LK::Theme::Dark; }));
}

TEST_F(ThemeChoiceTest, ADarkAppearanceLeavesTheDesktopsChangeAlone)
{
    DesktopPortal portal(DesktopPortal::Dark);
    SystemAppearance desktop;
    const ThemeChoice choice(store, desktop);
    EXPECT_TRUE(waitUntil([&] { return desktop.isDark(); }));
    portal.change(DesktopPortal::Light);
    EXPECT_TRUE(waitUntil([&] { return !desktop.isDark(); }));
    EXPECT_EQ(choice.theme(), LK::Theme::Dark);
}

TEST_F(ThemeChoiceTest, SystemAppearanceIsLightWithoutAPortal)
{
    ThemeChoice choice(store, noDesktop);
    choice.setAppearance(LK::Appearance::FollowSystem);
    EXPECT_EQ(choice.theme(), LK::Theme::Light);
}
