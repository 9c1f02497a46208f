import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The settings of the program as a whole.
Column {
    id: tab

    required property AppState app
    required property int buildNumber

    SettingsToggle {
        width: parent.width
        label: qsTr("Reopen the last shoot on launch")
        sublabel: qsTr("Picks up where you left off instead of the drop target.")
        isOn: tab.app.reopenLastShoot
        onTurned: on => tab.app.reopenLastShoot = on
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Launch Larkspan at login")
        sublabel: qsTr("So a card plugged in before you open the app still gets caught.")
        isOn: tab.app.launchAtLogin
        onTurned: on => tab.app.launchAtLogin = on
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Check for updates automatically")
        isOn: tab.app.checkForUpdatesAutomatically
        onTurned: on => tab.app.checkForUpdatesAutomatically = on
    }

    LKSettingsRow {
        width: parent.width
        label: qsTr("Appearance")

        LKSegmented {
            label: qsTr("Appearance")
            options: [{
                    "value": LK.Appearance.AlwaysDark,
                    "label": qsTr("Dark")
                }, {
                    "value": LK.Appearance.AlwaysLight,
                    "label": qsTr("Light")
                }, {
                    "value": LK.Appearance.FollowSystem,
                    "label": qsTr("Auto")
                }]
            selection: tab.app.appearance
            onActivated: value => tab.app.appearance = value
        }
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Boring Mode")
        sublabel: qsTr("Turns off the background warp, cursor glow, and other animation — lighter on an older Mac.")
        isOn: tab.app.boringMode
        onTurned: on => tab.app.boringMode = on
    }

    SettingsToggle {
        width: parent.width
        isLast: true
        label: qsTr("Sound Effects")
        sublabel: qsTr("Few and subtle: an intro chime, and a completion cue when a sort finishes.")
        isOn: tab.app.soundEnabled
        onTurned: on => tab.app.soundEnabled = on
    }

    Item {
        width: parent.width
        height: 40

        LKText {
            anchors.left: parent.left
            anchors.right: updates.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: updates.wasAsked ? qsTr("Larkspan can't look for updates yet.") : qsTr("Version 1.0 (build %1) · Sort model 1.0").arg(tab.buildNumber)
            font: LK.font(10.5)
            color: LK.palette.textTertiary
            isRead: true
        }

        LKButton {
            id: updates

            property bool wasAsked: false

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            size: LKButton.Sm
            title: qsTr("Check for updates")
            onActivated: wasAsked = true
        }
    }
}
