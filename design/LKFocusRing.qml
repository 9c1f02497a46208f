import QtQuick
import Larkspan.Design

// Shows keyboard focus, as a ring around its parent. Bind visible to the parent's visualFocus.
LKRectangle {
    property real cornerRadius: 5
    // From the parent's edge to the ring's outer edge, in points.
    property real reach: 3

    anchors.fill: parent
    anchors.margins: -reach
    radius: cornerRadius + 3
    color: "transparent"
    border.width: 2
    border.color: LK.palette.accent
}
