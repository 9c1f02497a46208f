import QtQuick
import QtQuick.Layouts
import Larkspan.Design

// A bin with its tick for "a listing needs it", and what the shoot has of it.
LKPressable {
    id: row

    required property string bin
    required property bool needed
    required property string status
    property color statusColor: LK.palette.textTertiary

    // The user ticked it, or took the tick off.
    signal turned(bool needed)

    words: bin
    implicitHeight: 26
    leftPadding: 8
    rightPadding: 8
    spacing: 8
    checkable: true
    checked: needed
    ring.cornerRadius: 6
    ring.reach: 1

    onActivated: row.turned(!row.needed)

    LKAccessible.role: Accessible.CheckBox
    Accessible.onToggleAction: {
        if (row.enabled)
            row.press();
    }
    Accessible.description: status

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
    }
}
