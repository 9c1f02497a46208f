import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// A bin with its tick for "a listing needs it", and what the shoot has of it.
T.AbstractButton {
    id: row

    required property string bin
    required property bool needed
    required property string status
    property color statusColor: LK.palette.textTertiary

    // The user ticked it, or took the tick off.
    signal turned(bool needed)

    text: bin
    implicitHeight: 26
    leftPadding: 8
    rightPadding: 8
    spacing: 8
    hoverEnabled: true

    onClicked: row.turned(!row.needed)
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            row.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            row.clicked();
    }

    LKAccessible.role: Accessible.CheckBox
    Accessible.name: bin
    Accessible.description: status
    Accessible.checkable: true
    Accessible.checked: needed
    // The template reports its own state, which is always off, when assistive technology connects.
    Accessible.onCheckableChanged: LK.put(row.Accessible, "checkable", true)
    Accessible.onCheckedChanged: LK.put(row.Accessible, "checked", row.needed)
    Accessible.onPressAction: row.clicked()

    contentItem: RowLayout {
        spacing: row.spacing

        LKRectangle {
            Layout.preferredWidth: 14
            Layout.preferredHeight: 14
            radius: 4
            color: row.needed ? LK.palette.accentSolid : "transparent"
            border.width: row.needed ? 0 : 1
            border.color: LK.palette.borderStrong

            LKIcon {
                anchors.centerIn: parent
                visible: row.needed
                name: "checkmark"
                size: 9
                color: LK.palette.textOnAccent
            }
        }

        LKText {
            text: row.bin
            font: LK.font(12)
            color: row.needed ? LK.palette.textPrimary : LK.palette.textSecondary
        }

        LKText {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignRight
            text: row.status
            font: LK.font(11)
            color: row.statusColor
        }
    }

    background: LKRectangle {
        radius: 6
        color: row.down ? LK.palette.surfacePressed : row.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }

        LKFocusRing {
            anchors.margins: -1
            visible: row.visualFocus
            cornerRadius: 6
        }
    }
}
