import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// The one switch of the house: a pill and a knob.
T.AbstractButton {
    id: control

    property bool isOn: false
    // The name of what it switches, for assistive technology.
    property string label

    // Flips the switch as the user does, then emits toggled; isOn has the new state by then.
    function flip() {
        LK.put(control, "isOn", !control.isOn);
        control.toggled();
    }

    implicitWidth: 34
    implicitHeight: 20
    opacity: enabled ? 1 : 0.45
    layer.enabled: !enabled // else the shadow would show through the knob
    focusPolicy: Qt.StrongFocus

    onClicked: control.flip()
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            control.flip();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            control.flip();
    }

    Accessible.name: label
    Accessible.checkable: true
    Accessible.checked: isOn
    // The template reports its own state, which is always off, when assistive technology connects.
    Accessible.onCheckableChanged: LK.put(control.Accessible, "checkable", true)
    Accessible.onCheckedChanged: LK.put(control.Accessible, "checked", control.isOn)
    Accessible.onPressAction: {
        if (control.enabled)
            control.flip();
    }

    indicator: LKRectangle {
        implicitWidth: 34
        implicitHeight: 20
        radius: height / 2
        color: control.isOn ? LK.palette.accent : LK.palette.surfacePressed

        LKColorBehavior on color  {
        }

        // The knob.
        LKDropShadow {
            x: control.isOn !== control.mirrored ? 16 : 2
            y: 2
            width: 16
            height: 16
            cornerRadius: 8
            shadow.color: Qt.rgba(0, 0, 0, 0.35)
            shadow.radius: 1
            shadow.y: 1

            Behavior on x  {
                LKNumberMotion {
                }
            }

            LKRectangle {
                objectName: "knob"
                anchors.fill: parent
                radius: 8
                color: "white"
            }
        }

        LKFocusRing {
            visible: control.visualFocus
            cornerRadius: 10
        }
    }
}
