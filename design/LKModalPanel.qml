pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// The card of a dialog above the whole window.
Item {
    id: panel

    property real cornerRadius: 10
    property alias color: surface.color

    Repeater {
        model: LK.palette.shadowModal

        LKDropShadow {
            required property lkShadow modelData

            anchors.fill: panel
            cornerRadius: panel.cornerRadius
            shadow: modelData
        }
    }

    LKSurface {
        id: surface

        anchors.fill: parent
        radius: panel.cornerRadius
        color: LK.palette.surfaceElevated
        stroke: LK.palette.borderSubtle
    }
}
