import QtQuick
import Larkspan.Shell

// Asks for a folder, or for a file to write: in the desktop's own panel, or in ours, over the whole window.
Item {
    id: panels

    required property OverlayStack stack
    required property FileRequest request

    Connections {
        target: panels.request

        function onDesktopFolderAsked() {
            desktop.ask("DesktopFolderPanel.qml");
        }

        function onDesktopFileAsked() {
            desktop.ask("DesktopFilePanel.qml");
        }
    }

    // Loads a new panel for each request.
    Loader {
        id: desktop

        function ask(panel: url) {
            setSource("", {});
            setSource(panel, {
                    "request": panels.request
                });
        }
    }

    ModalOverlay {
        objectName: "filePanelOverlay"
        stack: panels.stack
        kind: OverlayStack.FilePanel
        shown: panels.request.browser.isOpen
        scrimOpacity: 0.45
        onAboutToShow: card.setSource("FileBrowserCard.qml", {
                "browser": panels.request.browser,
                "focus": true
            })
        onClosed: card.source = ""
        onDismissed: panels.request.browser.cancel()

        Loader {
            id: card

            focus: true
        }
    }

    ModalOverlay {
        id: question

        stack: panels.stack
        kind: OverlayStack.ReplaceQuestion
        shown: panels.request.browser.fileToReplace !== ""
        scrimOpacity: 0.45
        onDismissed: panels.request.browser.keepFile()

        MessageCard {
            focus: true
            message: qsTr("A file of that name is already in this folder. Replacing it overwrites its contents.")
            answers: [qsTr("Replace"), qsTr("Cancel")]
            onAnswered: index => {
                if (index === 0)
                    panels.request.browser.replaceFile();
                else
                    panels.request.browser.keepFile();
            }

            // Keeps the words of an answered question while it fades.
            Binding on title  {
                value: qsTr("Replace “%1”?").arg(panels.request.browser.fileToReplace)
                when: question.shown
                restoreMode: Binding.RestoreNone
            }
        }
    }
}
