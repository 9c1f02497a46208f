import QtQuick
import Larkspan.Design

// One line of plain text. A text that has no room is elided, and a tool tip shows all of it.
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
