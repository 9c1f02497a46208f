#include "shell/window/AppState.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto sortToolID = u"binnacle"_s;
const auto generalTab = u"General"_s;
const auto sortingTab = u"Sorting"_s;

const auto appearanceKey = u"lkAppearance"_s;
const auto reopenLastKey = u"lkReopenLast"_s;
const auto accountNameKey = u"lkAccountName"_s;
const auto boringModeKey = u"lkBoringMode"_s;
const auto checkForUpdatesKey = u"lkCheckForUpdates"_s;
const auto soundEnabledKey = u"lkSoundEnabled"_s;

} // namespace

AppState::AppState(SettingsStore &settings, SystemAppearance &system, LoginItem loginItem,
                   std::function<void(bool)> enableSound)
    : m_settings(settings)
    , m_system(system)
    , m_loginItem(std::move(loginItem))
    , m_enableSound(std::move(enableSound))
    , m_toolID(sortToolID)
    , m_preferencesTab(generalTab)
{
    m_closeTimer.setSingleShot(true);
    m_closeTimer.setInterval(closingTime);
    connect(&m_closeTimer, &QTimer::timeout, this, &AppState::finishClosing);
    connect(this, &AppState::viewChanged, this, &AppState::isSortToolOpenChanged);
    connect(this, &AppState::toolIDChanged, this, &AppState::isSortToolOpenChanged);
    connect(&m_system, &SystemAppearance::changed, this, &AppState::resolveTheme);
    readSettings();
    if (!m_soundEnabled) {
        m_enableSound(false);
    }
    resolveTheme();
}

void AppState::readSettings()
{
    m_reopenLastShoot = m_settings.boolean(reopenLastKey).value_or(false);
    m_accountName = m_settings.string(accountNameKey).value_or(u"My Account"_s);
    m_boringMode = m_settings.boolean(boringModeKey).value_or(false);
    m_checkForUpdatesAutomatically = m_settings.boolean(checkForUpdatesKey).value_or(true);
    m_soundEnabled = m_settings.boolean(soundEnabledKey).value_or(true);
    m_launchAtLogin = m_loginItem.isEnabled();
    m_appearance =
        LK::appearanceFromRawValue(m_settings.string(appearanceKey).value_or(QString())).value_or(m_appearance);
}

void AppState::openTool(const QString &id)
{
    m_closeTimer.stop();
    change(m_closing, false, &AppState::closingChanged);
    change(m_toolID, id, &AppState::toolIDChanged);
    change(m_shipOpen, false, &AppState::shipOpenChanged);
    change(m_shipEmail, QString(), &AppState::shipEmailChanged);
    change(m_shipSent, false, &AppState::shipSentChanged);
    change(m_view, ViewMode::Tool, &AppState::viewChanged);
}

void AppState::closeTool()
{
    change(m_closing, true, &AppState::closingChanged);
    if (!m_closeTimer.isActive()) {
        m_closeTimer.start();
    }
}

void AppState::finishClosing()
{
    change(m_view, ViewMode::Landing, &AppState::viewChanged);
    change(m_closing, false, &AppState::closingChanged);
}

void AppState::finishIntro()
{
    change(m_phase, Phase::App, &AppState::phaseChanged);
}

void AppState::openPreferences()
{
    change(m_preferencesTab, isSortToolOpen() ? sortingTab : generalTab, &AppState::preferencesTabChanged);
    change(m_showPreferences, true, &AppState::showPreferencesChanged);
}

bool AppState::isSortToolOpen() const
{
    return m_view == ViewMode::Tool && m_toolID == sortToolID;
}

void AppState::resolveTheme()
{
    const bool isDark =
        m_appearance == LK::Appearance::FollowSystem ? m_system.isDark() : m_appearance == LK::Appearance::AlwaysDark;
    change(m_theme, isDark ? LK::Theme::Dark : LK::Theme::Light, &AppState::themeChanged);
}

void AppState::setAppearance(LK::Appearance appearance)
{
    if (change(m_appearance, appearance, &AppState::appearanceChanged)) {
        m_settings.setString(appearanceKey, LK::rawValue(appearance));
        resolveTheme();
    }
}

void AppState::setReopenLastShoot(bool reopen)
{
    if (change(m_reopenLastShoot, reopen, &AppState::reopenLastShootChanged)) {
        m_settings.setBoolean(reopenLastKey, reopen);
    }
}

void AppState::setAccountName(const QString &name)
{
    if (change(m_accountName, name, &AppState::accountNameChanged)) {
        m_settings.setString(accountNameKey, name);
    }
}

void AppState::setBoringMode(bool boring)
{
    if (change(m_boringMode, boring, &AppState::boringModeChanged)) {
        m_settings.setBoolean(boringModeKey, boring);
    }
}

void AppState::setLaunchAtLogin(bool launch)
{
    if (!change(m_launchAtLogin, launch, &AppState::launchAtLoginChanged) || launch == m_loginItem.isEnabled()) {
        return;
    }
    if (!m_loginItem.setEnabled(launch)) {
        change(m_launchAtLogin, m_loginItem.isEnabled(), &AppState::launchAtLoginChanged);
    }
}

void AppState::setCheckForUpdatesAutomatically(bool check)
{
    if (change(m_checkForUpdatesAutomatically, check, &AppState::checkForUpdatesAutomaticallyChanged)) {
        m_settings.setBoolean(checkForUpdatesKey, check);
    }
}

void AppState::setSoundEnabled(bool enabled)
{
    if (change(m_soundEnabled, enabled, &AppState::soundEnabledChanged)) {
        m_settings.setBoolean(soundEnabledKey, enabled);
        m_enableSound(enabled);
    }
}

} // namespace larkspan
