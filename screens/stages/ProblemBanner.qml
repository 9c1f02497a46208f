import QtQuick
import Larkspan.Design

// Says what keeps the tool from doing its work, or what the editor must know before going on. Takes no room while there
// is nothing to say.
FocusScope {
    id: banner

    property string message
    // It has a button that takes it away.
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
        Accessible.description: banner.message // whoever comes here by keyboard hears what it is about
        onActivated: banner.dismissed()
    }
}
