import QtQuick
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The menu of the window, in place of a menu bar. F10 opens it.
IconButton {
    id: control

    required property AppState app
    required property SortEngine engine
    required property CoverageCheck coverage
    required property HandoffExport handoff

    signal exportClips
    signal exportVocabulary

    name: "line.3.horizontal"
    help: qsTr("Menu")
    hoverTint: LK.palette.textPrimary
    LKAccessible.role: Accessible.ButtonMenu
    LKAccessible.expanded: menu.visible
    isOpen: menu.visible
    onActivated: menu.visible = !menu.visible

    EditTexts {
        id: edits

        engine: control.engine
    }

    Shortcut {
        sequence: "F10"
        onActivated: menu.open()
    }

    LKMenu {
        id: menu

        y: control.height + 4
        title: control.help

        LKMenuItem {
            text: edits.undo
            keys: qsTr("Ctrl+Z")
            enabled: edits.canUndo && control.app.isSortToolOpen
            onTriggered: control.engine.undo()
        }

        LKMenuItem {
            text: edits.redo
            keys: qsTr("Ctrl+Shift+Z")
            enabled: edits.canRedo && control.app.isSortToolOpen
            onTriggered: control.engine.redo()
        }

        LKMenuSeparator {
        }

        LKMenuItem {
            text: qsTr("Preferences…")
            keys: qsTr("Ctrl+,")
            onTriggered: control.app.openPreferences()
        }

        LKMenuItem {
            text: qsTr("Check Coverage…")
            enabled: control.coverage.isAvailable
            onTriggered: control.coverage.open()
        }

        LKMenuItem {
            text: qsTr("Export For…")
            enabled: control.handoff.isAvailable
            onTriggered: control.handoff.open()
        }

        LKMenuItem {
            text: qsTr("Copy Report…")
            enabled: control.engine.copyHistory.hasReport
            onTriggered: control.engine.showCopyReport()
        }

        LKMenuItem {
            text: qsTr("Verify Copies Byte for Byte")
            marked: verification.isOn
            checkable: true
            onTriggered: verification.isOn = !verification.isOn

            Verification {
                id: verification

                engine: control.engine
            }
        }

        LKMenu {
            title: qsTr("Diagnostics")

            LKMenuItem {
                text: qsTr("Export Clip Diagnostics (CSV)…")
                enabled: control.engine.clipCount > 0
                onTriggered: control.exportClips()
            }

            LKMenuItem {
                text: qsTr("Export Vision Vocabulary…")
                onTriggered: control.exportVocabulary()
            }
        }
    }
}
