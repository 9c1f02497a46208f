#include "shell/window/AppState.h"

#include <utility>

namespace larkspan {

AppState::AppState(SettingsStore &settings, SystemAppearance &system, LoginItem loginItem,
                   std::function<void(bool)> enableSound)
    : m_theme(settings, system, this)
    , m_preferences(settings, std::move(loginItem), std::move(enableSound), this)
{
    handOn();
}

void AppState::handOn()
{
    connect(&m_navigation, &Navigation::introEnded, this, &AppState::phaseChanged);
    connect(&m_navigation, &Navigation::hasToolChanged, this, &AppState::viewChanged);
    connect(&m_navigation, &Navigation::toolIDChanged, this, &AppState::toolIDChanged);
    connect(&m_navigation, &Navigation::isSortToolOpenChanged, this, &AppState::isSortToolOpenChanged);
    connect(&m_navigation, &Navigation::isClosingChanged, this, &AppState::closingChanged);
    connect(&m_navigation, &Navigation::toolIndexChanged, this, &AppState::toolIndexChanged);
    connect(&m_navigation, &Navigation::dragXChanged, this, &AppState::dragXChanged);
    connect(&m_navigation, &Navigation::showsPreferencesChanged, this, &AppState::showPreferencesChanged);
    connect(&m_navigation, &Navigation::preferencesTabChanged, this, &AppState::preferencesTabChanged);
    connect(&m_shipForm, &ShipForm::isOpenChanged, this, &AppState::shipOpenChanged);
    connect(&m_shipForm, &ShipForm::emailChanged, this, &AppState::shipEmailChanged);
    connect(&m_shipForm, &ShipForm::isSentChanged, this, &AppState::shipSentChanged);
    connect(&m_theme, &ThemeChoice::appearanceChanged, this, &AppState::appearanceChanged);
    connect(&m_theme, &ThemeChoice::themeChanged, this, &AppState::themeChanged);
    const auto &preferences = m_preferences;
    connect(&preferences, &AppPreferences::reopenLastShootChanged, this, &AppState::reopenLastShootChanged);
    connect(&preferences, &AppPreferences::accountNameChanged, this, &AppState::accountNameChanged);
    connect(&preferences, &AppPreferences::boringModeChanged, this, &AppState::boringModeChanged);
    connect(&preferences, &AppPreferences::launchAtLoginChanged, this, &AppState::launchAtLoginChanged);
    connect(&preferences, &AppPreferences::checkForUpdatesAutomaticallyChanged, this,
            &AppState::checkForUpdatesAutomaticallyChanged);
    connect(&preferences, &AppPreferences::soundEnabledChanged, this, &AppState::soundEnabledChanged);
}

void AppState::openTool(const QString &id)
{
    m_shipForm.clear();
    m_navigation.openTool(id);
}

} // namespace larkspan
