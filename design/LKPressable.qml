import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// The base of every button, and of every row that is pressed. The mouse, Space, Return, Enter and assistive technology
// press it; a held key presses it once. Controls made of it only paint.
T.AbstractButton {
    id: pressable

    // The words on it, which are its accessible name as well unless that is set.
    property string words
    property alias ring: focusRing
    // The duration for the colour of a fill: a press and its release animate faster than hovering.
    property int fillMotion: LK.motion.hover

    // By mouse, by keyboard or by assistive technology.
    signal activated

    // Does what a click does. In an exclusive group, the chosen button stays chosen.
    function press() {
        if (checkable && !(autoExclusive && checked)) {
            toggle();
            toggled();
        }
        clicked();
    }

    text: LK.literal(words)
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    onDownChanged: fillMotion = LK.motion.press
    onHoveredChanged: fillMotion = LK.motion.hover
    onClicked: pressable.activated()
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            pressable.press();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            pressable.press();
    }

    Accessible.name: words
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onPressAction: {
        if (pressable.enabled)
            pressable.press();
    }

    LKFocusRing {
        id: focusRing

        visible: pressable.visualFocus
    }
}
