import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen while files are copied or moved into a folder for each bin, which can't be cancelled half done.
FocusScope {
    id: view

    required property SortEngine engine

    focus: true

    ExportTexts {
        id: texts

        engine: view.engine
    }

    Column {
        anchors.centerIn: parent
        padding: 34
        spacing: 13

        LKLoadingState {
            anchors.horizontalCenter: parent.horizontalCenter
            messages: texts.steps
        }

        LKProgressBar {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 340
            label: texts.progress
            done: view.engine.done
            total: view.engine.total
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: texts.promise
            font: LK.font(11)
            color: LK.palette.textTertiary
            isRead: true
        }

        CopyPhaseLines {
            anchors.horizontalCenter: parent.horizontalCenter
            phases: CopyPhases {
                engine: view.engine
            }
        }
    }
}
