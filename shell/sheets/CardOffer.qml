import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// The overlay that offers to bring in a card that was put in.
ModalOverlay {
    id: offer

    required property AppState app
    required property SortEngine engine
    required property VolumeWatcher volumeWatcher

    readonly property bool takesKeyboard: stack.cardOfferTakesFocus

    // A popup with focus: true takes keyboard focus at the end of its enter transition, even under other overlays.
    focus: takesKeyboard
    onTakesKeyboardChanged: takingKeyboard.restart()

    kind: OverlayStack.CardOffer
    wanted: volumeWatcher.hasCandidate
    shown: wanted && app.phase === AppState.App
    scrimOpacity: 0.45
    onScrimTapped: volumeWatcher.decline()
    onDismissed: volumeWatcher.decline()

    // Takes focus after the item that had it has given it up.
    Timer {
        id: takingKeyboard

        interval: 0
        onTriggered: {
            if (offer.takesKeyboard && offer.opened)
                offer.forceActiveFocus(Qt.PopupFocusReason);
        }
    }

    ImportPromptView {
        focus: true
        engine: offer.engine
        isTopmost: offer.stack.isCardOfferTopmost
        onAccept: offer.volumeWatcher.accept()
        onDecline: offer.volumeWatcher.decline()
        onOpenPreferences: offer.app.openPreferences()

        // An answered card keeps its words while it fades.
        Binding on displayName  {
            value: offer.volumeWatcher.displayName
            when: offer.volumeWatcher.hasCandidate
            restoreMode: Binding.RestoreNone
        }
        Binding on isCounted  {
            value: offer.volumeWatcher.isCounted
            when: offer.volumeWatcher.hasCandidate
            restoreMode: Binding.RestoreNone
        }
        Binding on clipCount  {
            value: offer.volumeWatcher.clipCount
            when: offer.volumeWatcher.hasCandidate
            restoreMode: Binding.RestoreNone
        }
    }
}
