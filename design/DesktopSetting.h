#pragma once

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVariant>

namespace larkspan {

// A setting of the desktop as its portal tells it, and when that changes. Asking never waits: there is no value until
// the portal has answered, and none where there is no portal or it doesn't know the setting. Main thread.
class DesktopSetting : public QObject
{
    Q_OBJECT

public:
    DesktopSetting(QDBusConnection bus, QString group, QString key);

    [[nodiscard]] const QVariant &value() const { return m_value; }

Q_SIGNALS:
    void changed();

private:
    void ask();
    Q_SLOT void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);
    void take(QVariant value);

    QDBusConnection m_bus;
    QString m_group;
    QString m_key;
    QVariant m_value;
};

} // namespace larkspan
