#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

#include "shell/launcher/ShipForm.h"
#include "shell/preferences/AppPreferences.h"
#include "shell/window/Navigation.h"
#include "shell/window/ThemeChoice.h"

namespace larkspan {

// The state of the shell as one object for its views: the place in the program (Navigation), the theme (ThemeChoice),
// the form on a tool's page (ShipForm) and the general preferences (AppPreferences), which it hands on. Main thread.
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
    // The launcher's carousel: the tool in its middle, and the distance that it is dragged, in points.
    Q_PROPERTY(int toolIndex READ toolIndex WRITE setToolIndex NOTIFY toolIndexChanged)
    Q_PROPERTY(double dragX READ dragX WRITE setDragX NOTIFY dragXChanged)
    Q_PROPERTY(larkspan::LK::Appearance appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged)
    Q_PROPERTY(larkspan::LK::Theme theme READ theme NOTIFY themeChanged)
    Q_PROPERTY(larkspan::LKPalette palette READ palette NOTIFY themeChanged)
    Q_PROPERTY(bool showPreferences READ showPreferences WRITE setShowPreferences NOTIFY showPreferencesChanged)
    Q_PROPERTY(QString preferencesTab READ preferencesTab WRITE setPreferencesTab NOTIFY preferencesTabChanged)
    // The form that asks to be told when a tool ships: shown, its text, sent.
    Q_PROPERTY(bool shipOpen READ shipOpen WRITE setShipOpen NOTIFY shipOpenChanged)
    Q_PROPERTY(QString shipEmail READ shipEmail WRITE setShipEmail NOTIFY shipEmailChanged)
    Q_PROPERTY(bool shipSent READ shipSent WRITE setShipSent NOTIFY shipSentChanged)
    Q_PROPERTY(larkspan::ShipForm *shipForm READ shipForm CONSTANT)
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

    // settings and system outlive the state. enableSound is called whenever soundEnabled changes, and at once if the
    // stored value is off.
    AppState(SettingsStore &settings, SystemAppearance &system, LoginItem loginItem,
             std::function<void(bool enabled)> enableSound);

    // Shows a tool from its start, one that is just closing included, with an empty form.
    Q_INVOKABLE void openTool(const QString &id);
    Q_INVOKABLE void closeTool() { m_navigation.closeTool(); }
    Q_INVOKABLE void finishIntro() { m_navigation.finishIntro(); }
    // Opens the sheet on the settings that matter for the current screen.
    Q_INVOKABLE void openPreferences() { m_navigation.openPreferences(); }
    // Makes the theme what appearance, or the desktop, says now.
    void resolveTheme() { m_theme.resolve(); }

    Phase phase() const { return m_navigation.isIntroOver() ? Phase::App : Phase::Intro; }
    ViewMode view() const { return m_navigation.hasTool() ? ViewMode::Tool : ViewMode::Landing; }
    const QString &toolID() const { return m_navigation.toolID(); }
    bool isSortToolOpen() const { return m_navigation.isSortToolOpen(); }
    bool closing() const { return m_navigation.isClosing(); }
    int toolIndex() const { return m_navigation.toolIndex(); }
    void setToolIndex(int index) { m_navigation.setToolIndex(index); }
    double dragX() const { return m_navigation.dragX(); }
    void setDragX(double offset) { m_navigation.setDragX(offset); }
    bool showPreferences() const { return m_navigation.showsPreferences(); }
    void setShowPreferences(bool show) { m_navigation.showPreferences(show); }
    const QString &preferencesTab() const { return m_navigation.preferencesTab(); }
    void setPreferencesTab(const QString &tab) { m_navigation.setPreferencesTab(tab); }

    LK::Appearance appearance() const { return m_theme.appearance(); }
    void setAppearance(LK::Appearance appearance) { m_theme.setAppearance(appearance); }
    LK::Theme theme() const { return m_theme.theme(); }
    const LKPalette &palette() const { return LK::paletteOf(m_theme.theme()); }

    ShipForm *shipForm() { return &m_shipForm; }
    bool shipOpen() const { return m_shipForm.isOpen(); }
    void setShipOpen(bool open) { m_shipForm.setOpen(open); }
    const QString &shipEmail() const { return m_shipForm.email(); }
    void setShipEmail(const QString &email) { m_shipForm.setEmail(email); }
    bool shipSent() const { return m_shipForm.isSent(); }
    void setShipSent(bool sent) { m_shipForm.setSent(sent); }

    bool reopenLastShoot() const { return m_preferences.reopenLastShoot(); }
    void setReopenLastShoot(bool reopen) { m_preferences.setReopenLastShoot(reopen); }
    const QString &accountName() const { return m_preferences.accountName(); }
    void setAccountName(const QString &name) { m_preferences.setAccountName(name); }
    bool boringMode() const { return m_preferences.boringMode(); }
    void setBoringMode(bool boring) { m_preferences.setBoringMode(boring); }
    bool launchAtLogin() const { return m_preferences.launchAtLogin(); }
    // Goes back to the truth when the desktop refuses.
    void setLaunchAtLogin(bool launch) { m_preferences.setLaunchAtLogin(launch); }
    bool checkForUpdatesAutomatically() const { return m_preferences.checkForUpdatesAutomatically(); }
    void setCheckForUpdatesAutomatically(bool check) { m_preferences.setCheckForUpdatesAutomatically(check); }
    bool soundEnabled() const { return m_preferences.soundEnabled(); }
    void setSoundEnabled(bool enabled) { m_preferences.setSoundEnabled(enabled); }

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
    void handOn(); // what the parts tell of

    Navigation m_navigation{this};
    ShipForm m_shipForm{this};
    ThemeChoice m_theme;
    AppPreferences m_preferences;
};

} // namespace larkspan
