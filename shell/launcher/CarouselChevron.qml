import QtQuick
import Larkspan.Design

// Moves the carousel by one card; faint at the last one.
LKPressable {
    id: chevron

    implicitWidth: 30
    implicitHeight: 30
    opacity: enabled ? 1 : 0.3
    font: LK.font(15, Font.Medium)
    focusPolicy: Qt.TabFocus

    contentItem: LKText {
        text: chevron.text
        font: chevron.font
        color: LK.palette.textSecondary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: LKSurface {
        radius: width / 2
        color: chevron.down ? LK.palette.surfacePressed : chevron.hovered ? LK.palette.surfaceHover : "transparent"
        stroke: LK.palette.borderSubtle

        LKColorBehavior on color  {
        }
    }
}
