#pragma once

#include <QtCore/QObject>

#include "core/settings/SettingsStore.h"
#include "design/LK.h"
#include "shell/desktop/SystemAppearance.h"

namespace larkspan {

// The appearance that the editor has chosen, stored as it changes, and the theme that follows from it. Main thread.
class ThemeChoice : public QObject
{
    Q_OBJECT

public:
    // settings and system outlive it.
    ThemeChoice(SettingsStore &settings, SystemAppearance &system, QObject *parent = nullptr);

    [[nodiscard]] LK::Appearance appearance() const { return m_appearance; }
    void setAppearance(LK::Appearance appearance);
    [[nodiscard]] LK::Theme theme() const { return m_theme; }
    // Sets the theme by the appearance, or by the desktop if that decides.
    void resolve();

Q_SIGNALS:
    void appearanceChanged();
    void themeChanged();

private:
    SettingsStore &m_settings;
    SystemAppearance &m_system;
    LK::Appearance m_appearance = LK::Appearance::AlwaysDark;
    LK::Theme m_theme = LK::Theme::Dark;
};

} // namespace larkspan
