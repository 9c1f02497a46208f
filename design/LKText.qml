pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// A plain text: one line, or as many as it takes if it wraps. One that has no room is elided, and a tool tip shows all
// of it.
Text {
    id: label

    // True if assistive technology reads it by itself, and not with the control that it is on.
    property bool isRead: false
    // False if the control that it is on has a tool tip of its own.
    property bool hasHelp: true
    // True while the control that it is on has keyboard focus, which shows the tool tip as the pointer does.
    property bool isReached: false

    // The tool tip, created only while the text is cut: a list has hundreds of texts.
    property LKToolTip toolTip: null
    readonly property bool needsToolTip: truncated && hasHelp

    onNeedsToolTipChanged: {
        if (toolTip)
            toolTip.destroy();
        toolTip = needsToolTip ? help.createObject(label) : null;
    }

    color: LK.palette.textPrimary
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft
    maximumLineCount: wrapMode === Text.NoWrap ? 1 : 0x7fffffff
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: isRead ? text : ""
    Accessible.ignored: !isRead

    Component {
        id: help

        LKToolTip {
            text: label.text
            wanted: pointer.hovered || label.isReached

            HoverHandler {
                id: pointer
            }
        }
    }
}
