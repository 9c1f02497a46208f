#pragma once

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>

#include "tests/support/WaitUntil.h"

namespace larkspan::test {

// A portal of the desktop that answers what it is asked only when the test says so. Needs a session bus of the test's
// own. Main thread.
class LatePortal : public QDBusVirtualObject
{
public:
    LatePortal()
    {
        m_bus.registerVirtualObject(m_path, this);
        m_bus.registerService(m_service);
    }
    ~LatePortal() override
    {
        m_bus.unregisterService(m_service);
        QDBusConnection::disconnectFromBus(m_bus.name());
    }

    // Returns whether so many settings have been asked for.
    [[nodiscard]] bool isAsked(qsizetype times)
    {
        return waitUntil([this, times] { return m_questions.size() >= times; });
    }

    // Says that a setting has changed.
    void change(const QString &group, const QString &key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(m_path, m_interface, QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    // Answers every question with the value that the setting had when it was asked for.
    void answer(const QVariant &value)
    {
        for (const QDBusMessage &question : m_questions) {
            const QDBusVariant wrapped(QVariant::fromValue(QDBusVariant(value)));
            m_bus.send(question.createReply(QVariant::fromValue(wrapped)));
        }
        m_questions.clear();
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        if (message.interface() != m_interface) {
            return false;
        }
        m_questions.push_back(message);
        return true;
    }

private:
    const QString m_service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString m_path = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString m_interface = QStringLiteral("org.freedesktop.portal.Settings");
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("late portal"));
    QList<QDBusMessage> m_questions;
};

} // namespace larkspan::test
