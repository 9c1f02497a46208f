import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The title of the screen, in a line or two.
Column {
    id: title

    required property SortEngine engine
    required property string toolName

    readonly property StageTexts texts: StageTexts {
        engine: title.engine
        toolName: title.toolName
    }

    topPadding: 12
    bottomPadding: 12
    spacing: 3

    LKText {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: title.texts.title
        font: LK.font(11.5)
        elide: Text.ElideMiddle
        leftPadding: 16
        rightPadding: 16
        Accessible.role: Accessible.Heading
        isRead: true
    }

    LKText {
        width: parent.width
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        text: title.texts.shapes
        font: LK.font(11)
        color: LK.palette.textTertiary
        isRead: true
    }
}
