#include "shell/preferences/AppPreferences.h"

#include <utility>

#include "shell/window/FieldChange.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto reopenLastKey = u"lkReopenLast"_s;
const auto accountNameKey = u"lkAccountName"_s;
const auto boringModeKey = u"lkBoringMode"_s;
const auto checkForUpdatesKey = u"lkCheckForUpdates"_s;
const auto soundEnabledKey = u"lkSoundEnabled"_s;

} // namespace

AppPreferences::AppPreferences(SettingsStore &settings, LoginItem loginItem, std::function<void(bool)> enableSound,
                               QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_loginItem(std::move(loginItem))
    , m_enableSound(std::move(enableSound))
    , m_reopenLastShoot(m_settings.boolean(reopenLastKey).value_or(false))
    , m_accountName(m_settings.string(accountNameKey).value_or(u"My Account"_s))
    , m_boringMode(m_settings.boolean(boringModeKey).value_or(false))
    , m_launchAtLogin(m_loginItem.isEnabled())
    , m_checkForUpdatesAutomatically(m_settings.boolean(checkForUpdatesKey).value_or(true))
    , m_soundEnabled(m_settings.boolean(soundEnabledKey).value_or(true))
{
    if (!m_soundEnabled) {
        m_enableSound(false);
    }
}

void AppPreferences::setReopenLastShoot(bool reopen)
{
    if (changeField(*this, m_reopenLastShoot, reopen, &AppPreferences::reopenLastShootChanged)) {
        m_settings.setBoolean(reopenLastKey, reopen);
    }
}

void AppPreferences::setAccountName(const QString &name)
{
    if (changeField(*this, m_accountName, name, &AppPreferences::accountNameChanged)) {
        m_settings.setString(accountNameKey, name);
    }
}

void AppPreferences::setBoringMode(bool boring)
{
    if (changeField(*this, m_boringMode, boring, &AppPreferences::boringModeChanged)) {
        m_settings.setBoolean(boringModeKey, boring);
    }
}

void AppPreferences::setLaunchAtLogin(bool launch)
{
    const bool isNew = changeField(*this, m_launchAtLogin, launch, &AppPreferences::launchAtLoginChanged);
    if (isNew && launch != m_loginItem.isEnabled() && !m_loginItem.setEnabled(launch)) {
        changeField(*this, m_launchAtLogin, m_loginItem.isEnabled(), &AppPreferences::launchAtLoginChanged);
    }
}

void AppPreferences::setCheckForUpdatesAutomatically(bool check)
{
    if (changeField(*this, m_checkForUpdatesAutomatically, check,
                    &AppPreferences::checkForUpdatesAutomaticallyChanged)) {
        m_settings.setBoolean(checkForUpdatesKey, check);
    }
}

void AppPreferences::setSoundEnabled(bool enabled)
{
    if (changeField(*this, m_soundEnabled, enabled, &AppPreferences::soundEnabledChanged)) {
        m_settings.setBoolean(soundEnabledKey, enabled);
        m_enableSound(enabled);
    }
}

} // namespace larkspan
