import QtQuick
import Larkspan.Design

// An action in a popover: its name, and a line about it.
LKPressable {
    id: control

    property string symbol
    property string title
    property string detail

    words: title
    implicitWidth: 260
    implicitHeight: 42
    leftPadding: 8
    rightPadding: 8
    ring.cornerRadius: 6
    ring.reach: 1

    Accessible.description: detail

    contentItem: ProjectLines {
        symbol: control.symbol
        title: control.title
        detail: control.detail
    }

    background: LKRectangle {
        radius: 6
        color: control.down ? LK.palette.surfacePressed : control.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }
    }
}
