import QtQuick
import Larkspan.Design

// Content on a field of small squares that bloom from the centre and then twinkle. Not used by a screen yet; the
// gallery shows it.
Item {
    id: background

    default property alias content: holder.data

    Rectangle {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    LKStarlightCanvas {
        anchors.fill: parent
    }

    Item {
        id: holder

        anchors.fill: parent
    }
}
