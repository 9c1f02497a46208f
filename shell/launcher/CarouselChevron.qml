import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// Moves the carousel by one card; faint where there is none.
T.AbstractButton {
    id: chevron

    implicitWidth: 30
    implicitHeight: 30
    opacity: enabled ? 1 : 0.3
    font: LK.font(15, Font.Medium)
    hoverEnabled: true
    focusPolicy: Qt.TabFocus

    Keys.onReturnPressed: chevron.clicked()
    Keys.onEnterPressed: chevron.clicked()

    Accessible.onPressAction: chevron.clicked()

    contentItem: Text {
        text: chevron.text
        font: chevron.font
        color: LK.palette.textSecondary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
    }

    background: LKSurface {
        radius: width / 2
        color: chevron.down ? LK.palette.surfacePressed : chevron.hovered ? LK.palette.surfaceHover : "transparent"
        stroke: LK.palette.borderSubtle

        LKColorBehavior on color  {
        }

        LKFocusRing {
            visible: chevron.visualFocus
        }
    }
}
