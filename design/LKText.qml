import QtQuick
import Larkspan.Design

// One line of text as it stands. What has no room is told by a tool tip.
Text {
    id: text

    color: LK.palette.textPrimary
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
    maximumLineCount: 1
    textFormat: Text.PlainText

    HoverHandler {
        id: pointer

        enabled: text.truncated
    }

    LKToolTip {
        text: text.text
        wanted: text.truncated && pointer.hovered
    }
}
