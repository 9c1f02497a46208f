import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A symbol to press. What it does is said in words by its help.
T.AbstractButton {
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

    // By mouse, by keyboard or by assistive technology.
    signal activated

    text: help.replace(/&/g, "&&") // an ampersand is one, and not the mark of a shortcut
    implicitWidth: size
    implicitHeight: size
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    // As of a button.
    property int fillMotion: LK.motion.hover

    onDownChanged: fillMotion = LK.motion.press
    onHoveredChanged: fillMotion = LK.motion.hover
    onClicked: control.activated()
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            control.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            control.clicked();
    }

    Accessible.name: help
    Accessible.onPressAction: {
        if (control.enabled)
            control.clicked();
    }

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

        LKFocusRing {
            visible: control.visualFocus
        }
    }

    LKToolTip {
        text: control.help
        above: control.helpAbove
        wanted: (control.hovered || control.visualFocus) && !control.isOpen
    }
}
