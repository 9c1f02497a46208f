#include "shell/SystemAppearance.h"

#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto portalService = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto settingsInterface = u"org.freedesktop.portal.Settings"_s;
const auto appearanceGroup = u"org.freedesktop.appearance"_s;
const auto colorSchemeKey = u"color-scheme"_s;

constexpr uint prefersDark = 1; // 0: no preference, 2: light

} // namespace

SystemAppearance::SystemAppearance(QDBusConnection bus) : m_bus(std::move(bus))
{
    if (!m_bus.isConnected()) {
        return;
    }
    // First, so that no change between the question and its answer is missed.
    m_bus.connect(portalService, portalPath, settingsInterface, u"SettingChanged"_s, this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void SystemAppearance::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == appearanceGroup && key == colorSchemeKey) {
        m_hasChanged = true;
        take(value.variant());
    }
}

void SystemAppearance::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_s);
    question << appearanceGroup << colorSchemeKey;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        // An answer can be delivered later than a change that came after it.
        if (const QDBusPendingReply<QDBusVariant> reply = *watcher; !reply.isError() && !m_hasChanged) {
            take(reply.value().variant());
        }
        watcher->deleteLater();
    });
}

void SystemAppearance::take(const QVariant &colorScheme)
{
    // An answer comes wrapped once more than a change.
    const QVariant value = colorScheme.metaType() == QMetaType::fromType<QDBusVariant>()
                               ? colorScheme.value<QDBusVariant>().variant()
                               : colorScheme;
    const bool isDark = value.toUInt() == prefersDark;
    if (m_isDark != isDark) {
        m_isDark = isDark;
        Q_EMIT changed();
    }
}

} // namespace larkspan
