#include "design/SystemMotion.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

SystemMotion::SystemMotion(const QDBusConnection &bus)
    : m_shared(bus, u"org.freedesktop.appearance"_s, u"reduced-motion"_s)
    , m_gnome(bus, u"org.gnome.desktop.interface"_s, u"enable-animations"_s)
    , m_kde(bus, u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s)
{
    for (const DesktopSetting *setting : {&m_shared, &m_gnome, &m_kde}) {
        connect(setting, &DesktopSetting::changed, this, &SystemMotion::update);
    }
}

void SystemMotion::update()
{
    const bool animates = m_gnome.value().metaType() != QMetaType::fromType<bool>() || m_gnome.value().toBool();
    bool isNumber = false;
    const bool isInstant = m_kde.value().toDouble(&isNumber) == 0.0 && isNumber;
    const bool isReduced = m_shared.value().toUInt() == 1 || !animates || isInstant;
    if (m_isReduced != isReduced) {
        m_isReduced = isReduced;
        Q_EMIT changed();
    }
}

} // namespace larkspan
