import QtQuick
import Larkspan.Design

// The surface of what floats above the rest for a while.
LKDropShadow {
    cornerRadius: 7
    shadow: LK.palette.shadowPopover

    Rectangle {
        anchors.fill: parent
        radius: parent.cornerRadius
        color: LK.palette.surfaceElevated
        border.width: 1
        border.color: LK.palette.borderSubtle
    }
}
