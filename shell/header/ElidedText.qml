import QtQuick
import Larkspan.Design

// One line of text. What has no room for it shows all of it under the pointer.
Text {
    id: line

    // As where keyboard focus is on what the text belongs to.
    property bool isReached: false

    elide: Text.ElideRight
    maximumLineCount: 1
    textFormat: Text.PlainText

    HoverHandler {
        id: hover
    }

    LKToolTip {
        text: line.text
        wanted: line.truncated && (hover.hovered || line.isReached)
    }
}
