import QtQuick
import Larkspan.Design

// The program's mark; its shadow falls beyond the item.
Item {
    id: mark

    property real size: 118

    implicitWidth: size
    implicitHeight: size

    AppIconCanvas {
        anchors.centerIn: parent
        width: mark.size * 1.9
        height: width
        side: mark.size
    }
}
