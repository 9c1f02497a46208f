import QtQuick
import QtQuick.Layouts
import Larkspan.Design

// A word of the header that opens a popover.
LKPressable {
    id: control

    property string title
    property string help
    property bool isOpen: false
    property bool isCut: false // the title is elided

    words: title
    implicitWidth: Math.min(implicitContentWidth + leftPadding + rightPadding, 220)
    implicitHeight: 26
    leftPadding: 8
    rightPadding: 6

    LKAccessible.role: Accessible.ButtonDropDown
    LKAccessible.expanded: isOpen
    Accessible.description: help

    contentItem: RowLayout {
        spacing: 4

        LKText {
            Layout.fillWidth: true
            hasHelp: false
            onTruncatedChanged: control.isCut = truncated
            text: control.title
            font: LK.font(12.5)
            color: control.hovered || control.isOpen ? LK.palette.textPrimary : LK.palette.textSecondary

            LKColorBehavior on color  {
            }
        }

        LKIcon {
            name: "chevron.up.chevron.down"
            size: 11
            color: LK.palette.textTertiary
        }
    }

    background: LKRectangle {
        radius: 5
        color: control.down ? LK.palette.surfacePressed : control.hovered || control.isOpen ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }
    }

    LKToolTip {
        text: control.isCut ? control.title + "\n" + control.help : control.help
        wanted: (control.hovered || control.visualFocus) && !control.isOpen
    }
}
