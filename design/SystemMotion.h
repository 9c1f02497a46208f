#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include "design/DesktopSetting.h"

namespace larkspan {

// Follows the desktop's wish for less motion, as its portal has it. Full motion until the portal has
// answered, and where there is none: asking never waits. Main thread.
class SystemMotion : public QObject
{
    Q_OBJECT

public:
    explicit SystemMotion(const QDBusConnection &bus = QDBusConnection::sessionBus());

    [[nodiscard]] bool isReduced() const { return m_isReduced; }

Q_SIGNALS:
    void changed();

private:
    void update();

    // The setting that all desktops are to share is young: the two large ones still have their own.
    DesktopSetting m_shared;
    DesktopSetting m_gnome;
    DesktopSetting m_kde;
    bool m_isReduced = false;
};

} // namespace larkspan
