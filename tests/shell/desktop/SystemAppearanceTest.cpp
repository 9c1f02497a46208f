#include "shell/desktop/SystemAppearance.h"

#include <QtDBus/QDBusPendingCallWatcher>

#include "tests/shell/DesktopPortal.h"
#include "tests/support/LatePortal.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST(SystemAppearance, IsDarkOnADarkDesktop)
{
    const DesktopPortal portal(DesktopPortal::Dark);
    const SystemAppearance system;
    EXPECT_FALSE(system.isDark()); // nobody waits for the answer
    EXPECT_TRUE(waitUntil([&] { return system.isDark(); }));
}

TEST(SystemAppearance, FollowsTheDesktopsChangesAndNoOtherSetting)
{
    DesktopPortal portal(DesktopPortal::NoPreference);
    const SystemAppearance system;
    int changes = 0;
    QObject::connect(&system, &SystemAppearance::changed, [&changes] { ++changes; });
    portal.say(u"org.example.other"_s, DesktopPortal::Dark);
    portal.change(DesktopPortal::Light);
    portal.change(DesktopPortal::Dark);
    EXPECT_TRUE(waitUntil([&] { return system.isDark(); }));
    portal.change(DesktopPortal::NoPreference);
    EXPECT_TRUE(waitUntil([&] { return !system.isDark(); }));
    EXPECT_EQ(changes, 2);
}

TEST(SystemAppearance, AnAnswerThatComesAfterAChangeDoesNotUndoIt)
{
    LatePortal portal;
    const SystemAppearance system;
    ASSERT_TRUE(portal.isAsked(1));
    portal.change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, QVariant::fromValue(uint(DesktopPortal::Dark)));
    ASSERT_TRUE(waitUntil([&] { return system.isDark(); }));
    portal.answer(QVariant::fromValue(uint(DesktopPortal::Light)));
    EXPECT_TRUE(waitUntil([&] { return system.findChild<QDBusPendingCallWatcher *>() == nullptr; }));
    EXPECT_TRUE(system.isDark());
}

TEST(SystemAppearance, AnAnswerThatComesAfterAChangeOfAnotherSettingIsTaken)
{
    LatePortal portal;
    const SystemAppearance system;
    ASSERT_TRUE(portal.isAsked(1));
    portal.change(u"org.freedesktop.appearance"_s, u"contrast"_s, QVariant::fromValue(1u));
    portal.answer(QVariant::fromValue(uint(DesktopPortal::Dark)));
    EXPECT_TRUE(waitUntil([&] { return system.isDark(); }));
}

TEST(SystemAppearance, IsLightWithoutAPortalAndWithoutABus)
{
    const SystemAppearance noPortal;
    const SystemAppearance noBus{QDBusConnection(u"a bus that is not there"_s)};
    const DesktopPortal later(DesktopPortal::Dark); // by the time it is up, the first question has been answered
    EXPECT_FALSE(noPortal.isDark());
    EXPECT_FALSE(noBus.isDark());
}
