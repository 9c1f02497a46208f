#pragma once

#include <QtDBus/QDBusVariant>

#include "tests/support/MockService.h"

namespace larkspan::test {

// The desktop's portal as far as the colour scheme goes.
class DesktopPortal
{
public:
    enum ColorScheme : uint { NoPreference = 0, Dark = 1, Light = 2 };

    explicit DesktopPortal(ColorScheme scheme)
    {
        m_service.addMethod(
            QStringLiteral("Read"), QStringLiteral("ss"), QStringLiteral("v"),
            QStringLiteral("ret = dbus.UInt32(%1, variant_level=2) if (args[0], args[1]) == "
                           "('org.freedesktop.appearance', 'color-scheme') else dbus.UInt32(9, variant_level=2)")
                .arg(scheme));
    }

    void change(ColorScheme scheme) { say(QStringLiteral("org.freedesktop.appearance"), scheme); }
    void say(const QString &group, uint scheme)
    {
        m_service.emitSignal(QStringLiteral("SettingChanged"), QStringLiteral("ssv"),
                             {group, QStringLiteral("color-scheme"), QVariant::fromValue(QDBusVariant(scheme))});
    }

private:
    MockService m_service{QStringLiteral("org.freedesktop.portal.Desktop"),
                          QStringLiteral("/org/freedesktop/portal/desktop"),
                          QStringLiteral("org.freedesktop.portal.Settings")};
};

} // namespace larkspan::test
