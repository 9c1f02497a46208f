import QtQuick
import Larkspan.Design

// Shows where the keyboard is. Lies around its parent; bind visible to the parent's visualFocus.
LKRectangle {
    property real cornerRadius: 5

    anchors.fill: parent
    anchors.margins: -3
    radius: cornerRadius + 3
    color: "transparent"
    border.width: 2
    border.color: LK.palette.accent
}
