import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A word or two about the thing beside it.
T.Label {
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
    elide: Text.ElideRight
    maximumLineCount: 1
    textFormat: Text.PlainText

    Accessible.name: text

    background: Rectangle {
        radius: 4
        color: [LK.palette.accentSubtle, LK.palette.warningSubtle, LK.palette.surfaceHover][badge.tone]
    }

    LKToolTip {
        text: badge.text
        wanted: badge.truncated && pointer.hovered
    }

    HoverHandler {
        id: pointer
    }
}
