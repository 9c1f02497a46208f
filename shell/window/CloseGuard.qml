import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// Keeps the window from closing over a copy that is under way, and asks the editor about it.
ModalOverlay {
    id: guard

    required property SortEngine engine

    readonly property CloseRequest request: CloseRequest {
        engine: guard.engine
        onCloseDue: guard.parent.Window.window.close()
    }

    kind: OverlayStack.CloseQuestion
    shown: request.isShown
    scrimOpacity: 0.45
    onDismissed: request.keepOpen()

    MessageCard {
        focus: true
        title: guard.request.title
        message: guard.request.message
        answers: guard.request.answers
        onAnswered: index => guard.request.answer(index)
    }
}
