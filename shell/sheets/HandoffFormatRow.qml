import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// One of the formats that a shoot can be written in: its name, and a line on it.
T.AbstractButton {
    id: row

    required property string label
    required property string detail
    required property bool selected

    // By mouse, by keyboard or by assistive technology.
    signal chosen

    text: label
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 10
    rightPadding: 10
    topPadding: 7
    bottomPadding: 7
    hoverEnabled: true
    focusPolicy: selected || activeFocus ? Qt.StrongFocus : Qt.ClickFocus // Tab stops at one of them

    onClicked: row.chosen()

    LKAccessible.role: Accessible.RadioButton
    Accessible.name: label
    Accessible.description: detail
    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.onPressAction: row.clicked()

    contentItem: Column {
        spacing: 2

        LKText {
            width: parent.width
            text: row.label
            font: LK.font(12.5, row.selected ? Font.DemiBold : Font.Normal)
            color: LK.palette.textPrimary
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

        LKFocusRing {
            anchors.margins: -1
            visible: row.visualFocus
            cornerRadius: 6
        }
    }
}
