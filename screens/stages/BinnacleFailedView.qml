import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen after a failure; the engine's message tells the cases apart.
FocusScope {
    id: view

    required property SortEngine engine

    focus: true

    LKEmptyState {
        anchors.centerIn: parent
        focus: true
        tone: LKEmptyState.Error
        title: qsTr("Couldn't write the event")
        description: view.engine.stageText
        actionTitle: qsTr("Back to the Clips")
        onActivated: view.engine.backToResults()
    }
}
