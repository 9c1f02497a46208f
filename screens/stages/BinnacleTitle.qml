import QtQuick
import Larkspan.Design
import Larkspan.Screens

// What is on the screen, in a line or two.
Column {
    id: title

    required property SortEngine engine
    required property string toolName

    readonly property string firstLine: {
        switch (engine.stage) {
        case SortEngine.Working:
            return Wording.of(qsTr("Sorting %1"), [engine.folderName]);
        case SortEngine.Results:
            return Wording.of(qsTr("%1 · %2 clips · %3 bins"), [engine.folderName, engine.clipCount, engine.binCount]);
        case SortEngine.Organizing:
            return texts.title;
        case SortEngine.Done:
            return Wording.of(qsTr("%1 · event created"), [engine.folderName]);
        default:
            return title.toolName;
        }
    }

    readonly property ExportTexts texts: ExportTexts {
        engine: title.engine
    }

    topPadding: 12
    bottomPadding: 12
    spacing: 3

    Text {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: title.firstLine
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
        visible: title.engine.stage === SortEngine.Results
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("%1 vertical · %2 horizontal · native aspect kept").arg(title.engine.verticalCount).arg(title.engine.clipCount - title.engine.verticalCount)
        font: LK.font(11)
        color: LK.palette.textTertiary
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
