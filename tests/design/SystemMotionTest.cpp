#include "design/SystemMotion.h"

#include <QtDBus/QDBusPendingCallWatcher>

#include "tests/support/LatePortal.h"
#include "tests/support/MockService.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// The desktop's portal as far as motion goes. answer: Python for the value of the one setting that it knows.
class MotionPortal
{
public:
    MotionPortal(const QString &group, const QString &key, const QString &answer)
    {
        m_service.addMethod(
            u"Read"_s, u"ss"_s, u"v"_s,
            u"ret = %3 if (args[0], args[1]) == ('%1', '%2') else dbus.String('', variant_level=2)"_s.arg(group, key,
                                                                                                          answer));
    }

    void change(const QString &group, const QString &key, const QVariant &value)
    {
        m_service.emitSignal(u"SettingChanged"_s, u"ssv"_s, {group, key, QVariant::fromValue(QDBusVariant(value))});
    }

private:
    MockService m_service{u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                          u"org.freedesktop.portal.Settings"_s};
};

const auto appearance = u"org.freedesktop.appearance"_s;
const auto gnome = u"org.gnome.desktop.interface"_s;
const auto kde = u"org.kde.kdeglobals.KDE"_s;

} // namespace

TEST(SystemMotion, IsReducedWhereTheSharedSettingSaysSo)
{
    const MotionPortal portal(appearance, u"reduced-motion"_s, u"dbus.UInt32(1, variant_level=2)"_s);
    const SystemMotion motion;
    EXPECT_FALSE(motion.isReduced()); // nobody waits for the answer
    EXPECT_TRUE(waitUntil([&] { return motion.isReduced(); }));
}

TEST(SystemMotion, IsReducedWhereAnimationsAreOffInGnome)
{
    const MotionPortal portal(gnome, u"enable-animations"_s, u"dbus.Boolean(False, variant_level=2)"_s);
    const SystemMotion motion;
    EXPECT_TRUE(waitUntil([&] { return motion.isReduced(); }));
}

TEST(SystemMotion, IsReducedWhereAnimationsTakeNoTimeInPlasma)
{
    const MotionPortal portal(kde, u"AnimationDurationFactor"_s, u"dbus.String('0', variant_level=2)"_s);
    const SystemMotion motion;
    EXPECT_TRUE(waitUntil([&] { return motion.isReduced(); }));
}

TEST(SystemMotion, FollowsTheDesktopsChangesAndNoOtherSetting)
{
    MotionPortal portal(gnome, u"enable-animations"_s, u"dbus.Boolean(True, variant_level=2)"_s);
    const SystemMotion motion;
    int changes = 0;
    QObject::connect(&motion, &SystemMotion::changed, [&changes] { ++changes; });
    portal.change(gnome, u"enable-hot-corners"_s, false);
    portal.change(gnome, u"enable-animations"_s, u"not a flag at all"_s);
    portal.change(gnome, u"enable-animations"_s, false);
    EXPECT_TRUE(waitUntil([&] { return motion.isReduced(); }));
    portal.change(appearance, u"reduced-motion"_s, QVariant::fromValue(1u));
    portal.change(gnome, u"enable-animations"_s, true); // the other one still asks for less
    portal.change(appearance, u"reduced-motion"_s, QVariant::fromValue(0u));
    EXPECT_TRUE(waitUntil([&] { return !motion.isReduced(); }));
    EXPECT_EQ(changes, 2);
}

TEST(SystemMotion, AnAnswerThatComesAfterAChangeDoesNotUndoIt)
{
    LatePortal portal;
    const SystemMotion motion;
    ASSERT_TRUE(portal.isAsked(3));
    portal.change(appearance, u"reduced-motion"_s, QVariant::fromValue(1u));
    ASSERT_TRUE(waitUntil([&] { return motion.isReduced(); }));
    portal.answer(QVariant::fromValue(0u));
    EXPECT_TRUE(waitUntil([&] { return motion.findChild<QDBusPendingCallWatcher *>() == nullptr; }));
    EXPECT_TRUE(motion.isReduced());
}

TEST(SystemMotion, IsFullWithoutAPortalAndWithoutABus)
{
    const SystemMotion noPortal;
    const SystemMotion noBus{QDBusConnection(u"a bus that is not there"_s)};
    const MotionPortal later(appearance, u"reduced-motion"_s, u"dbus.UInt32(1, variant_level=2)"_s);
    EXPECT_FALSE(noPortal.isReduced());
    EXPECT_FALSE(noBus.isReduced());
}
