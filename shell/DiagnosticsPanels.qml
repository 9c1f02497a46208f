import QtQuick
import QtQuick.Dialogs
import Larkspan.Shell

// Asks where to write a diagnostic text, writes it, and says when that failed.
Item {
    id: panels

    required property DiagnosticsExport diagnostics

    readonly property bool shown: problem.shown
    readonly property alias level: problem.level
    // Until it has faded.
    readonly property bool covers: problem.visible

    function exportClips() {
        clips.open();
    }

    function exportVocabulary() {
        vocabulary.open();
    }

    FileDialog {
        id: clips

        objectName: "clipDiagnosticsPanel"
        fileMode: FileDialog.SaveFile
        title: qsTr("Export Clip Diagnostics")
        nameFilters: [qsTr("CSV files (*.csv)")]
        defaultSuffix: "csv"
        onAccepted: problem.message = panels.diagnostics.writeClips(selectedFile)
        Component.onCompleted: selectedFile = panels.diagnostics.suggestion("binnacle-diagnostics.csv")
    }

    FileDialog {
        id: vocabulary

        objectName: "vocabularyPanel"
        fileMode: FileDialog.SaveFile
        title: qsTr("Export Vision Vocabulary")
        nameFilters: [qsTr("Text files (*.txt)")]
        defaultSuffix: "txt"
        onAccepted: problem.message = panels.diagnostics.writeVocabulary(selectedFile)
        Component.onCompleted: selectedFile = panels.diagnostics.suggestion("vision-vocabulary.txt")
    }

    ModalOverlay {
        id: problem

        property string message

        shown: message !== ""
        scrimOpacity: 0.45
        z: 5
        onEscaped: problem.message = ""

        MessageCard {
            focus: true
            title: qsTr("The file couldn't be written")
            message: problem.message
            answers: [qsTr("OK")]
            onAnswered: problem.message = ""
        }
    }
}
