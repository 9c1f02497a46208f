import QtQuick
import Larkspan.Design

// A word or two about the thing beside it.
LKText {
    id: badge

    enum Tone {
        Accent,
        Warning,
        Neutral
    }

    property int tone: LKBadge.Neutral

    leftPadding: 7
    rightPadding: 7
    topPadding: 3
    bottomPadding: 3
    font: LK.font(10, Font.DemiBold)
    color: [LK.palette.accent, LK.palette.warning, LK.palette.textSecondary][tone]
    isRead: true

    LKRectangle {
        objectName: "fill"
        anchors.fill: parent
        z: -1
        radius: 4
        color: [LK.palette.accentSubtle, LK.palette.warningSubtle, LK.palette.surfaceHover][badge.tone]
    }
}
