#include "shell/window/ThemeChoice.h"

#include "shell/window/FieldChange.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto appearanceKey = u"lkAppearance"_s;

} // namespace

ThemeChoice::ThemeChoice(SettingsStore &settings, SystemAppearance &system, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_system(system)
{
    connect(&m_system, &SystemAppearance::changed, this, &ThemeChoice::resolve);
    // An unknown text is left alone.
    m_appearance =
        LK::appearanceFromRawValue(m_settings.string(appearanceKey).value_or(QString())).value_or(m_appearance);
    resolve();
}

void ThemeChoice::resolve()
{
    const bool isDark =
        m_appearance == LK::Appearance::FollowSystem ? m_system.isDark() : m_appearance == LK::Appearance::AlwaysDark;
    changeField(*this, m_theme, isDark ? LK::Theme::Dark : LK::Theme::Light, &ThemeChoice::themeChanged);
}

void ThemeChoice::setAppearance(LK::Appearance appearance)
{
    if (changeField(*this, m_appearance, appearance, &ThemeChoice::appearanceChanged)) {
        m_settings.setString(appearanceKey, LK::rawValue(appearance));
        resolve();
    }
}

} // namespace larkspan
