import QtQuick
import Larkspan.Design

// Says what keeps the tool from doing its work. Takes no room while there is nothing to say.
Item {
    id: banner

    property string message

    visible: message !== ""
    implicitHeight: visible ? note.implicitHeight + 12 : 0
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

    Text {
        id: note

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 28
        anchors.rightMargin: 28
        anchors.verticalCenter: parent.verticalCenter
        text: banner.message
        font: LK.font(11.5)
        color: LK.palette.textPrimary
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }
}
