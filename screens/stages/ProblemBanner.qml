import QtQuick
import Larkspan.Design

// A note on what keeps the tool from working, or on what the editor must know before going on. It takes no room while
// it is empty.
FocusScope {
    id: banner

    property string message
    // True if it has a button that dismisses it.
    property bool dismissible: false

    signal dismissed

    visible: message !== ""
    implicitHeight: visible ? Math.max(note.implicitHeight, button.visible ? button.implicitHeight : 0) + 12 : 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: message

    LKRectangle {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        radius: 6
        color: LK.palette.warningSubtle
        border.width: 1
        border.color: LK.palette.warning
    }

    LKText {
        id: note

        anchors.left: parent.left
        anchors.right: button.visible ? button.left : parent.right
        anchors.leftMargin: 28
        anchors.rightMargin: button.visible ? 12 : 28
        anchors.verticalCenter: parent.verticalCenter
        text: banner.message
        font: LK.font(11.5)
        wrapMode: Text.Wrap
    }

    LKButton {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: 22
        anchors.verticalCenter: parent.verticalCenter
        visible: banner.dismissible
        focus: true
        size: LKButton.Sm
        title: qsTr("Dismiss")
        Accessible.description: banner.message // keyboard focus reaches only the button, so it is read with it
        onActivated: banner.dismissed()
    }
}
