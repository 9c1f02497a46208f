import QtQuick
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// Offers to tell when a tool ships. The address is kept while the program runs and sent nowhere.
Column {
    id: notice

    required property AppState app
    required property string toolName

    readonly property ShipForm form: app.shipForm

    spacing: 14

    LKText {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: notice.app.shipSent
        text: Wording.of(qsTr("Noted. We'll email %1 when %2 ships."), [notice.app.shipEmail, notice.toolName])
        font: LK.font(12.5)
        color: LK.palette.textSecondary
        isRead: true
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: notice.form.asks
        spacing: 8
        onVisibleChanged: if (visible)
            address.forceActiveFocus()

        LKTextField {
            id: address

            width: 240
            placeholderText: qsTr("name@example.com")
            label: qsTr("E-mail address")
            text: notice.app.shipEmail
            onTextEdited: notice.app.shipEmail = text
            onAccepted: notice.form.send()
        }

        LKButton {
            kind: LKButton.Accent
            title: qsTr("Notify me")
            enabled: notice.form.canSend
            onActivated: notice.form.send()
        }
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 8

        LKButton {
            visible: notice.form.offers
            kind: LKButton.Accent
            title: qsTr("Tell me when it ships")
            onActivated: notice.app.shipOpen = true
        }

        LKButton {
            title: qsTr("Return to Larkspan")
            onActivated: notice.app.closeTool()
        }
    }
}
