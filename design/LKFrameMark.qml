import QtQuick
import Larkspan.Design

// The empty frame of a film, drawn above a screen's message.
LKRectangle {
    implicitWidth: 44
    implicitHeight: 28
    radius: 3
    color: "transparent"
    border.pixelAligned: false
    border.width: 2.4
    border.color: LK.palette.textTertiary
    antialiasing: true
}
