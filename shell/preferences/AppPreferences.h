#pragma once

#include <functional>

#include <QtCore/QObject>

#include "core/settings/SettingsStore.h"
#include "shell/desktop/LoginItem.h"

namespace larkspan {

// The preferences of the program as a whole, each stored as it changes. Main thread.
class AppPreferences : public QObject
{
    Q_OBJECT

public:
    // settings outlive it. enableSound is called whenever soundEnabled changes, and at once if the stored value is off.
    AppPreferences(SettingsStore &settings, LoginItem loginItem, std::function<void(bool enabled)> enableSound,
                   QObject *parent = nullptr);

    [[nodiscard]] bool reopenLastShoot() const { return m_reopenLastShoot; }
    void setReopenLastShoot(bool reopen);
    [[nodiscard]] const QString &accountName() const { return m_accountName; }
    void setAccountName(const QString &name);
    [[nodiscard]] bool boringMode() const { return m_boringMode; }
    void setBoringMode(bool boring);
    [[nodiscard]] bool launchAtLogin() const { return m_launchAtLogin; }
    // Goes back to the desktop's real state if the desktop refuses.
    void setLaunchAtLogin(bool launch);
    [[nodiscard]] bool checkForUpdatesAutomatically() const { return m_checkForUpdatesAutomatically; }
    void setCheckForUpdatesAutomatically(bool check);
    [[nodiscard]] bool soundEnabled() const { return m_soundEnabled; }
    void setSoundEnabled(bool enabled);

Q_SIGNALS:
    void reopenLastShootChanged();
    void accountNameChanged();
    void boringModeChanged();
    void launchAtLoginChanged();
    void checkForUpdatesAutomaticallyChanged();
    void soundEnabledChanged();

private:
    SettingsStore &m_settings;
    const LoginItem m_loginItem;
    const std::function<void(bool)> m_enableSound;

    bool m_reopenLastShoot = false;
    QString m_accountName;
    bool m_boringMode = false;
    bool m_launchAtLogin = false;
    bool m_checkForUpdatesAutomatically = true;
    bool m_soundEnabled = true;
};

} // namespace larkspan
