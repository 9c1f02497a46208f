#include "shell/desktop/SystemAppearance.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr uint prefersDark = 1; // 0: no preference, 2: light

} // namespace

SystemAppearance::SystemAppearance(const QDBusConnection &bus)
    : m_colorScheme(bus, u"org.freedesktop.appearance"_s, u"color-scheme"_s)
{
    connect(&m_colorScheme, &DesktopSetting::changed, this, [this] {
        const bool isDark = m_colorScheme.value().toUInt() == prefersDark;
        if (m_isDark != isDark) {
            m_isDark = isDark;
            Q_EMIT changed();
        }
    });
}

} // namespace larkspan
