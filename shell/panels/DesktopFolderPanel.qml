import QtQuick
import QtQuick.Dialogs
import Larkspan.Shell

// The desktop's own panel for a folder. Opens when it is created.
FolderDialog {
    id: panel

    required property FileRequest request

    objectName: "desktopFolderPanel"
    title: request.title
    acceptLabel: request.prompt
    currentFolder: request.start
    onAccepted: request.choose(selectedFolder)
    Component.onCompleted: open()
}
