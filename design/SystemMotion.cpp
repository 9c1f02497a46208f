#include "design/SystemMotion.h"

#include <array>

#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto portalService = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto settingsInterface = u"org.freedesktop.portal.Settings"_s;

// The setting that all desktops are to share is young: the two large ones still have their own.
struct Setting
{
    QLatin1StringView group;
    QLatin1StringView key;
    bool (*asksForLess)(const QVariant &value);
};

constexpr std::array settings{
    Setting{"org.freedesktop.appearance"_L1, "reduced-motion"_L1,
            [](const QVariant &value) { return value.toUInt() == 1; }},
    Setting{"org.gnome.desktop.interface"_L1, "enable-animations"_L1,
            [](const QVariant &value) { return value.metaType() == QMetaType::fromType<bool>() && !value.toBool(); }},
    Setting{"org.kde.kdeglobals.KDE"_L1, "AnimationDurationFactor"_L1,
            [](const QVariant &value) {
                bool isNumber = false;
                return value.toDouble(&isNumber) == 0.0 && isNumber;
            }},
};

// An answer comes wrapped once more than a change.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

SystemMotion::SystemMotion(QDBusConnection bus) : m_bus(std::move(bus))
{
    if (!m_bus.isConnected()) {
        return;
    }
    // First, so that no change between the questions and their answers is missed.
    m_bus.connect(portalService, portalPath, settingsInterface, u"SettingChanged"_s, this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    for (std::size_t i = 0; i < settings.size(); ++i) {
        QDBusMessage question = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_s);
        question << QString(settings[i].group) << QString(settings[i].key);
        auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, i] {
            // An answer can be delivered later than a change that came after it.
            if (const QDBusPendingReply<QDBusVariant> reply = *watcher; !reply.isError() && !m_changed.test(i)) {
                take(i, reply.value().variant());
            }
            watcher->deleteLater();
        });
    }
}

bool SystemMotion::isReduced() const
{
    return m_asks.any();
}

void SystemMotion::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    for (std::size_t i = 0; i < settings.size(); ++i) {
        if (group == settings[i].group && key == settings[i].key) {
            m_changed.set(i);
            take(i, value.variant());
        }
    }
}

void SystemMotion::take(std::size_t setting, const QVariant &value)
{
    const bool wasReduced = isReduced();
    m_asks.set(setting, settings[setting].asksForLess(unwrapped(value)));
    if (isReduced() != wasReduced) {
        Q_EMIT changed();
    }
}

} // namespace larkspan
