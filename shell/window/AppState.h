#pragma once

#include <chrono>
#include <functional>

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtQml/qqmlregistration.h>

#include "core/SettingsStore.h"
#include "design/LK.h"
#include "shell/desktop/LoginItem.h"
#include "shell/desktop/SystemAppearance.h"

namespace larkspan {

// What the shell shows, and the general preferences, each stored as it changes. Main thread.
class AppState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its views.")
    Q_PROPERTY(larkspan::AppState::Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(larkspan::AppState::ViewMode view READ view NOTIFY viewChanged)
    Q_PROPERTY(QString toolID READ toolID NOTIFY toolIDChanged)
    Q_PROPERTY(bool isSortToolOpen READ isSortToolOpen NOTIFY isSortToolOpenChanged)
    // The tool's screen is on its way out.
    Q_PROPERTY(bool closing READ closing NOTIFY closingChanged)
    // Where the launcher's carousel stands, and how far it is dragged from there, in points.
    Q_PROPERTY(int toolIndex READ toolIndex WRITE setToolIndex NOTIFY toolIndexChanged)
    Q_PROPERTY(double dragX READ dragX WRITE setDragX NOTIFY dragXChanged)
    Q_PROPERTY(larkspan::LK::Appearance appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged)
    Q_PROPERTY(larkspan::LK::Theme theme READ theme NOTIFY themeChanged)
    Q_PROPERTY(larkspan::LKPalette palette READ palette NOTIFY themeChanged)
    Q_PROPERTY(bool showPreferences MEMBER m_showPreferences NOTIFY showPreferencesChanged)
    Q_PROPERTY(QString preferencesTab MEMBER m_preferencesTab NOTIFY preferencesTabChanged)
    // The form that asks to be told when a tool ships: shown, its text, sent.
    Q_PROPERTY(bool shipOpen MEMBER m_shipOpen NOTIFY shipOpenChanged)
    Q_PROPERTY(QString shipEmail MEMBER m_shipEmail NOTIFY shipEmailChanged)
    Q_PROPERTY(bool shipSent MEMBER m_shipSent NOTIFY shipSentChanged)
    Q_PROPERTY(bool reopenLastShoot READ reopenLastShoot WRITE setReopenLastShoot NOTIFY reopenLastShootChanged)
    Q_PROPERTY(QString accountName READ accountName WRITE setAccountName NOTIFY accountNameChanged)
    Q_PROPERTY(bool boringMode READ boringMode WRITE setBoringMode NOTIFY boringModeChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool checkForUpdatesAutomatically READ checkForUpdatesAutomatically WRITE setCheckForUpdatesAutomatically
                   NOTIFY checkForUpdatesAutomaticallyChanged)
    Q_PROPERTY(bool soundEnabled READ soundEnabled WRITE setSoundEnabled NOTIFY soundEnabledChanged)

public:
    // Under names that QML can reach, which start in upper case. Intro gives way to App once, for good.
    enum class Phase { Intro, App };
    Q_ENUM(Phase)
    enum class ViewMode { Landing, Tool };
    Q_ENUM(ViewMode)

    // How long a tool's screen is seen to leave before the launcher takes its place.
    static constexpr std::chrono::milliseconds closingTime{270};

    // settings and system outlive the state. enableSound is told whenever soundEnabled changes, and at once if the
    // stored value is off.
    AppState(SettingsStore &settings, SystemAppearance &system, LoginItem loginItem,
             std::function<void(bool enabled)> enableSound);

    // Shows a tool from its start, one that is just closing included.
    Q_INVOKABLE void openTool(const QString &id);
    Q_INVOKABLE void closeTool();
    Q_INVOKABLE void finishIntro();
    // Opens the sheet on the settings that matter for the current screen.
    Q_INVOKABLE void openPreferences();
    // Makes the theme what appearance, or the desktop, says now.
    void resolveTheme();

    Phase phase() const { return m_phase; }
    ViewMode view() const { return m_view; }
    const QString &toolID() const { return m_toolID; }
    bool isSortToolOpen() const;
    bool closing() const { return m_closing; }
    int toolIndex() const { return m_toolIndex; }
    void setToolIndex(int index) { change(m_toolIndex, index, &AppState::toolIndexChanged); }
    double dragX() const { return m_dragX; }
    void setDragX(double offset) { change(m_dragX, offset, &AppState::dragXChanged); }
    LK::Appearance appearance() const { return m_appearance; }
    void setAppearance(LK::Appearance appearance);
    LK::Theme theme() const { return m_theme; }
    const LKPalette &palette() const { return LK::paletteOf(m_theme); }
    bool reopenLastShoot() const { return m_reopenLastShoot; }
    void setReopenLastShoot(bool reopen);
    const QString &accountName() const { return m_accountName; }
    void setAccountName(const QString &name);
    bool boringMode() const { return m_boringMode; }
    void setBoringMode(bool boring);
    bool launchAtLogin() const { return m_launchAtLogin; }
    // Goes back to the truth when the desktop refuses.
    void setLaunchAtLogin(bool launch);
    bool checkForUpdatesAutomatically() const { return m_checkForUpdatesAutomatically; }
    void setCheckForUpdatesAutomatically(bool check);
    bool soundEnabled() const { return m_soundEnabled; }
    void setSoundEnabled(bool enabled);

Q_SIGNALS:
    void phaseChanged();
    void viewChanged();
    void toolIDChanged();
    void isSortToolOpenChanged();
    void closingChanged();
    void toolIndexChanged();
    void dragXChanged();
    void appearanceChanged();
    void themeChanged();
    void showPreferencesChanged();
    void preferencesTabChanged();
    void shipOpenChanged();
    void shipEmailChanged();
    void shipSentChanged();
    void reopenLastShootChanged();
    void accountNameChanged();
    void boringModeChanged();
    void launchAtLoginChanged();
    void checkForUpdatesAutomaticallyChanged();
    void soundEnabledChanged();

private:
    void readSettings();
    void finishClosing();
    // Changes a field and says so; false if it was so already.
    template <typename Value>
    bool change(Value &field, const Value &value, void (AppState::*changed)())
    {
        if (field == value) {
            return false;
        }
        field = value;
        Q_EMIT(this->*changed)();
        return true;
    }

    SettingsStore &m_settings;
    SystemAppearance &m_system;
    const LoginItem m_loginItem;
    const std::function<void(bool)> m_enableSound;

    Phase m_phase = Phase::Intro;
    ViewMode m_view = ViewMode::Landing;
    QString m_toolID;
    bool m_closing = false;
    int m_toolIndex = 0;
    double m_dragX = 0.0;
    LK::Appearance m_appearance = LK::Appearance::AlwaysDark;
    LK::Theme m_theme = LK::Theme::Dark;
    bool m_showPreferences = false;
    QString m_preferencesTab;
    bool m_shipOpen = false;
    QString m_shipEmail;
    bool m_shipSent = false;
    bool m_reopenLastShoot = false;
    QString m_accountName;
    bool m_boringMode = false;
    bool m_launchAtLogin = false;
    bool m_checkForUpdatesAutomatically = true;
    bool m_soundEnabled = true;
    QTimer m_closeTimer{this};
};

} // namespace larkspan
