import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen for a folder without clips.
FocusScope {
    id: view

    required property SortEngine engine

    focus: true

    LKEmptyState {
        anchors.centerIn: parent
        focus: true
        tone: LKEmptyState.Error
        title: Wording.of(qsTr("No video files found in %1"), [view.engine.stageText])
        description: qsTr("Binnacle looked in that folder and every folder inside it. Check that the card is mounted, or choose a different folder.")
        actionTitle: qsTr("Choose Another Folder")
        onActivated: view.engine.chooseFolder()
    }
}
