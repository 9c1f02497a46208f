#pragma once

#include <bitset>
#include <cstddef>

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVariant>

namespace larkspan {

// Whether the desktop asks for less motion, as its portal says, and when that changes. Full motion until the portal has
// answered, and where there is none: asking never waits. Main thread.
class SystemMotion : public QObject
{
    Q_OBJECT

public:
    explicit SystemMotion(QDBusConnection bus = QDBusConnection::sessionBus());

    [[nodiscard]] bool isReduced() const;

Q_SIGNALS:
    void changed();

private:
    Q_SLOT void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);
    void take(std::size_t setting, const QVariant &value);

    QDBusConnection m_bus;
    std::bitset<8> m_asks;    // which of the desktops' settings ask for less
    std::bitset<8> m_changed; // which have been told of a change
};

} // namespace larkspan
