import QtQuick
import Larkspan.Design

// Content on a wire mesh that bends towards the pointer and sends a ring outward from each click.
Item {
    id: grid

    default property alias content: holder.data

    Rectangle {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    LKKineticGridCanvas {
        id: canvas

        anchors.fill: parent
    }

    MouseTracker {
        anchors.fill: parent
        enabled: !LK.boringMode
        onMove: point => canvas.movePointer(point)
        onClick: point => canvas.click(point)
        onExit: canvas.pointerLeft()
    }

    Item {
        id: holder

        anchors.fill: parent
    }
}
