import QtQuick
import Larkspan.Design
import Larkspan.Screens

// What is on the screen, in a line or two.
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

    Text {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: title.texts.title
        font: LK.font(11.5)
        color: LK.palette.textPrimary
        elide: Text.ElideMiddle
        leftPadding: 16
        rightPadding: 16
        textFormat: Text.PlainText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Text {
        width: parent.width
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        text: title.texts.shapes
        font: LK.font(11)
        color: LK.palette.textTertiary
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
