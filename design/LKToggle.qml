import QtQuick
import Larkspan.Design

// The one switch of the house: a pill and a knob.
LKPressable {
    id: control

    property alias isOn: control.checked
    // The name of what it switches, for assistive technology.
    property string label

    words: label
    checkable: true
    implicitWidth: 34
    implicitHeight: 20
    layer.enabled: !enabled // else the shadow would show through the knob
    ring.cornerRadius: 10

    LKAccessible.role: Accessible.Button

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
    }
}
