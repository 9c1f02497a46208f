import QtQuick
import QtQuick.Dialogs
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The program's window.
Window {
    id: root

    required property AppState app
    required property SortEngine engine
    required property VolumeWatcher volumeWatcher
    required property FolderRequest folderRequest
    required property int buildNumber
    property string classifierProblem

    title: qsTr("Larkspan")
    width: 1180
    height: 790
    minimumWidth: 980
    minimumHeight: 640
    color: LK.palette.surfaceWindow
    visible: true

    BinnacleView {
        anchors.fill: parent
        focus: true
        engine: root.engine
        buildNumber: root.buildNumber
        classifierProblem: root.classifierProblem
    }

    Connections {
        target: root.folderRequest
        function onAsked() {
            panel.open();
        }
    }

    FolderDialog {
        id: panel

        objectName: "folderPanel"

        title: root.folderRequest.message
        acceptLabel: root.folderRequest.prompt
        onAccepted: root.folderRequest.choose(panel.selectedFolder)
    }
}
