import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The window's edge: its line, the places to resize it by, and its controls in the corner. Lies above everything.
Item {
    id: frame

    readonly property real edge: 4 // points from the edge in which dragging resizes the window
    readonly property real corner: 10

    Item {
        anchors.fill: parent
        visible: frame.Window.visibility === Window.Windowed

        Rectangle {
            anchors.fill: parent
            color: "transparent"
            border.width: 1
            border.color: LK.palette.borderSubtle
        }

        WindowGrip {
            edges: Qt.LeftEdge
            width: frame.edge
            height: parent.height
        }

        WindowGrip {
            edges: Qt.RightEdge
            anchors.right: parent.right
            width: frame.edge
            height: parent.height
        }

        WindowGrip {
            edges: Qt.TopEdge
            width: parent.width
            height: frame.edge
        }

        WindowGrip {
            edges: Qt.BottomEdge
            anchors.bottom: parent.bottom
            width: parent.width
            height: frame.edge
        }

        WindowGrip {
            edges: Qt.TopEdge | Qt.LeftEdge
            width: frame.corner
            height: frame.corner
        }

        WindowGrip {
            edges: Qt.TopEdge | Qt.RightEdge
            anchors.right: parent.right
            width: frame.corner
            height: frame.corner
        }

        WindowGrip {
            edges: Qt.BottomEdge | Qt.LeftEdge
            anchors.bottom: parent.bottom
            width: frame.corner
            height: frame.corner
        }

        WindowGrip {
            edges: Qt.BottomEdge | Qt.RightEdge
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            width: frame.corner
            height: frame.corner
        }
    }

    WindowControls {
        x: 12
        y: 11 // in the middle of the header row
    }
}
