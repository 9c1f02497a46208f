import QtQuick
import Larkspan.Design

// A symbol to press. What it does is said in words by its help.
LKPressable {
    id: control

    property string name // of the symbol
    property color tint: LK.palette.textSecondary
    property color hoverTint: tint
    property string help
    property bool helpAbove: false
    // True while what the button opens is shown; the tool tip is hidden then.
    property bool isOpen: false
    // The side of the square that answers to the pointer, in points.
    property real size: 22

    words: help
    implicitWidth: size
    implicitHeight: size

    contentItem: LKIcon {
        name: control.name
        size: Math.round(control.size * 0.64)
        color: control.hovered || control.isOpen ? control.hoverTint : control.tint

        LKColorBehavior on color  {
        }
    }

    background: LKRectangle {
        radius: 5
        color: control.down ? LK.palette.surfacePressed : control.hovered || control.isOpen ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
            duration: control.fillMotion
        }
    }

    LKToolTip {
        text: control.help
        above: control.helpAbove
        wanted: (control.hovered || control.visualFocus) && !control.isOpen
    }
}
