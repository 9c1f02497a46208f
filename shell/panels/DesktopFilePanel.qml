import QtQuick
import QtQuick.Dialogs
import Larkspan.Shell

// The desktop's own panel for a file to write. Opens when it is created.
FileDialog {
    id: panel

    required property FileRequest request

    objectName: "desktopFilePanel"
    fileMode: FileDialog.SaveFile
    currentFolder: request.start
    title: request.title
    nameFilters: [request.nameFilter]
    defaultSuffix: request.suffix
    onAccepted: request.choose(selectedFile)
    Component.onCompleted: {
        selectedFile = request.suggestion;
        open();
    }
}
