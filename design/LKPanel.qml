import QtQuick
import Larkspan.Design

// The surface of menus, dropdown lists, popovers and tool tips.
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
