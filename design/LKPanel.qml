import QtQuick
import Larkspan.Design

// The surface of what floats above the rest for a while.
LKDropShadow {
    cornerRadius: 7
    shadow: LK.palette.shadowPopover

    LKSurface {
        anchors.fill: parent
        radius: parent.cornerRadius
        color: LK.palette.surfaceElevated
        stroke: LK.palette.borderSubtle
    }
}
