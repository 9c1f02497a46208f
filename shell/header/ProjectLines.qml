import QtQuick
import Larkspan.Design

// A symbol, and beside it a title over a line of detail.
Item {
    id: lines

    property string symbol
    property color tint: LK.palette.textSecondary
    property string title
    property string detail
    property real trailing: 0 // room left at the end, in points
    property bool showsTitle: true
    // True while the row that contains the lines has keyboard focus.
    property bool isReached: false

    readonly property real textX: icon.width + 10

    LKIcon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: lines.symbol
        size: 16
        color: lines.tint
    }

    Column {
        x: lines.textX
        width: parent.width - x - lines.trailing
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        LKText {
            width: parent.width
            isReached: lines.isReached
            opacity: lines.showsTitle ? 1 : 0
            text: lines.title
            font: LK.font(12, Font.Medium)
        }

        LKText {
            width: parent.width
            text: lines.detail
            font: LK.font(10.5)
            color: LK.palette.textTertiary
        }
    }
}
