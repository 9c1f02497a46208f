#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVariant>

namespace larkspan {

// Whether the desktop is dark, as its portal says, and when that changes. Light until the portal has answered, and
// where there is none: asking never waits. Main thread.
class SystemAppearance : public QObject
{
    Q_OBJECT

public:
    explicit SystemAppearance(QDBusConnection bus = QDBusConnection::sessionBus());

    [[nodiscard]] bool isDark() const { return m_isDark; }

Q_SIGNALS:
    void changed();

private:
    Q_SLOT void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);
    void ask();
    void take(const QVariant &colorScheme);

    QDBusConnection m_bus;
    bool m_isDark = false;
    bool m_hasChanged = false; // since the portal was asked
};

} // namespace larkspan
