import QtQuick
import Larkspan.Design

// A button on a picture: dark and translucent in either theme, so that it reads on any picture.
LKPressable {
    id: control

    property real cornerRadius: 4
    // The colour of a line inside the edge, if any.
    property color stroke: "transparent"

    ring.cornerRadius: cornerRadius

    background: LKRectangle {
        radius: control.cornerRadius
        color: Qt.rgba(0, 0, 0, control.down ? 0.75 : control.hovered ? 0.6 : 0.45)
        border.width: control.stroke.a > 0 ? 1 : 0
        border.color: control.stroke

        LKColorBehavior on color  {
        }
    }
}
