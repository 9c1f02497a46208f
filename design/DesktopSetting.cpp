#include "design/DesktopSetting.h"

#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto portalService = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto settingsInterface = u"org.freedesktop.portal.Settings"_s;

} // namespace

DesktopSetting::DesktopSetting(QDBusConnection bus, QString group, QString key)
    : m_bus(std::move(bus))
    , m_group(std::move(group))
    , m_key(std::move(key))
{
    if (!m_bus.isConnected()) {
        return;
    }
    // The bus finds a slot's types by their names, and this one has a name only once it was used.
    qRegisterMetaType<QDBusVariant>();
    // First, so that no change between the question and its answer is missed.
    m_bus.connect(portalService, portalPath, settingsInterface, u"SettingChanged"_s, this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void DesktopSetting::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_s);
    question << m_group << m_key;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        // An answer can be delivered later than a change that came after it.
        if (const QDBusPendingReply<QDBusVariant> reply = *watcher; !reply.isError() && !m_value.isValid()) {
            take(reply.value().variant());
        }
        watcher->deleteLater();
    });
}

void DesktopSetting::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == m_group && key == m_key) {
        take(value.variant());
    }
}

void DesktopSetting::take(QVariant value)
{
    // An answer comes wrapped once more than a change.
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    m_value = std::move(value);
    Q_EMIT changed();
}

} // namespace larkspan
