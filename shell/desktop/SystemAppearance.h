#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include "design/DesktopSetting.h"

namespace larkspan {

// Follows whether the desktop is dark, as its portal has it. Light until the portal has answered, and
// where there is none: asking never waits. Main thread.
class SystemAppearance : public QObject
{
    Q_OBJECT

public:
    explicit SystemAppearance(const QDBusConnection &bus = QDBusConnection::sessionBus());

    [[nodiscard]] bool isDark() const { return m_isDark; }

Q_SIGNALS:
    void changed();

private:
    DesktopSetting m_colorScheme;
    bool m_isDark = false;
};

} // namespace larkspan
