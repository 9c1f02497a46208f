pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// One half of the intro's film strip: the whole strip, seen through a window.
Item {
    id: half

    required property real baseOffset // where this window's part of the strip begins, negative
    required property real scrub

    readonly property int frameCount: 11
    readonly property int accentIndex: 7
    readonly property real frameWidth: 82
    readonly property real frameHeight: 96
    readonly property real frameGap: 6

    // Brighter towards the accent frame, and dimmer after it.
    function frameColor(index: int): color {
        if (index === accentIndex)
            return LK.palette.accent;
        if (index < accentIndex)
            return Qt.alpha(LK.palette.textPrimary, 0.3 + 0.4 * index / accentIndex);
        return Qt.alpha(LK.palette.textPrimary, 0.7 - 0.3 * (index - accentIndex) / Math.max(1, frameCount - 1 - accentIndex));
    }

    width: 352
    height: frameHeight

    // Rotated as one picture with an empty margin, since clipping a rotated item leaves jagged edges.
    Item {
        anchors.fill: parent
        anchors.margins: -1
        layer.enabled: half.rotation !== 0 && GraphicsInfo.api !== GraphicsInfo.Software
        layer.smooth: true

        Item {
            anchors.fill: parent
            anchors.margins: 1
            clip: true

            Row {
                objectName: "frames"
                x: half.baseOffset + half.scrub
                width: half.frameCount * (half.frameWidth + half.frameGap)
                spacing: half.frameGap

                Repeater {
                    model: half.frameCount

                    LKRectangle {
                        required property int index

                        width: half.frameWidth
                        height: half.frameHeight
                        radius: 6
                        color: "transparent"
                        border.width: 1.6
                        border.pixelAligned: false
                        border.color: half.frameColor(index)
                    }
                }
            }
        }
    }
}
