import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A thin line over a picture, filled as far as its value, with a knob while it is touched.
T.Slider {
    id: control

    property string label

    implicitWidth: 120
    implicitHeight: 20
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.name: label

    background: Item {
        LKRectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: 4
            radius: height / 2
            color: Qt.rgba(1, 1, 1, 0.3)

            LKRectangle {
                width: control.visualPosition * parent.width
                height: 4
                radius: height / 2
                color: "white"
            }
        }

        LKFocusRing {
            visible: control.visualFocus
        }
    }

    handle: LKRectangle {
        x: control.visualPosition * (control.availableWidth - width)
        y: (control.height - height) / 2
        width: 12
        height: 12
        radius: 6
        color: "white"
        opacity: control.pressed || control.hovered || control.visualFocus ? 1 : 0

        Behavior on opacity  {
            LKNumberMotion {
            }
        }
    }
}
