import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The name of the account, and the way to the settings.
HeaderButton {
    id: control

    required property AppState app

    title: app.accountName
    help: qsTr("Settings and account")
    isOpen: panel.visible
    onActivated: panel.visible = !panel.visible
    Accessible.name: title === "" ? help : title

    // Lets the popover close first.
    Timer {
        id: opening

        interval: 0
        onTriggered: control.app.openPreferences()
    }

    LKPopover {
        id: panel

        x: control.width - width
        LKAccessible.name: control.help
        padding: 6

        MenuActionRow {
            width: 240
            focus: true
            symbol: "gearshape"
            title: qsTr("General App Settings")
            detail: qsTr("Appearance, sound and account")
            onActivated: {
                panel.close();
                opening.start();
            }
        }
    }
}
