import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// Ctrl+Z and Ctrl+Shift+Z for the editor's edits of a shoot, unless a popup or an overlay covers the place of this item.
// A text field with keyboard focus has them for its own text.
Item {
    id: shortcuts

    required property AppState app
    required property SortEngine engine

    readonly property bool isInUse: enabled && app.isSortToolOpen

    EditTexts {
        id: edits

        engine: shortcuts.engine
    }

    Shortcut {
        enabled: shortcuts.isInUse && edits.canUndo
        sequence: "Ctrl+Z"
        onActivated: shortcuts.engine.undo()
    }

    Shortcut {
        enabled: shortcuts.isInUse && edits.canRedo
        sequence: "Ctrl+Shift+Z"
        onActivated: shortcuts.engine.redo()
    }
}
