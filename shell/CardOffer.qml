import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// Asks, over the whole window, about the card that was put in.
ModalOverlay {
    id: offer

    required property AppState app
    required property SortEngine engine
    required property VolumeWatcher volumeWatcher

    shown: volumeWatcher.hasCandidate && app.phase === AppState.App
    scrimOpacity: 0.45
    onScrimTapped: volumeWatcher.decline()

    ImportPromptView {
        focus: true
        engine: offer.engine
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
