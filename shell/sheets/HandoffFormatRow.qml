import QtQuick
import Larkspan.Design

// One of the formats that a shoot can be written in: its name, and a line on it.
LKPressable {
    id: row

    required property string label
    required property string detail
    required property bool selected

    words: label
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 10
    rightPadding: 10
    topPadding: 7
    bottomPadding: 7
    checkable: true
    autoExclusive: true
    checked: selected
    focusPolicy: selected || activeFocus ? Qt.StrongFocus : Qt.ClickFocus // Tab stops at one of them

    ring.cornerRadius: 6
    ring.reach: 1

    LKAccessible.role: Accessible.RadioButton
    Accessible.description: detail

    contentItem: Column {
        spacing: 2

        LKText {
            width: parent.width
            text: row.label
            font: LK.font(12.5, row.selected ? Font.DemiBold : Font.Normal)
        }

        LKText {
            width: parent.width
            text: row.detail
            font: LK.font(11)
            color: LK.palette.textTertiary
        }
    }

    background: LKRectangle {
        radius: 6
        color: row.selected ? LK.palette.surfaceSelected : row.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }
    }
}
