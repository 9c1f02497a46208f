import QtQuick
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The tab for imports and exports: the Shoots folder, the editor, the handling of the files.
Column {
    id: tab

    required property SortEngine engine
    required property SortPreferences preferences

    LKSettingsRow {
        width: parent.width
        label: qsTr("Shoots folder")
        sublabel: qsTr("SD-card imports create a dated subfolder here automatically.")

        Row {
            spacing: 8

            LKText {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, 140)
                text: tab.preferences.shootsFolder
                font: LK.font(11.5)
                color: LK.palette.textSecondary
                horizontalAlignment: Text.AlignRight
                elide: Text.ElideMiddle
                isRead: true
            }

            LKButton {
                title: qsTr("Choose…")
                onActivated: tab.engine.chooseImportRoot()
            }
        }
    }

    LKSettingsRow {
        width: parent.width
        label: qsTr("File handling")
        sublabel: tab.preferences.handlingDetail

        LKDropdown {
            width: 160
            label: qsTr("File handling")
            options: tab.preferences.handlings
            selection: tab.preferences.handling
            onActivated: tab.preferences.handling = selection
        }
    }

    LKSettingsRow {
        width: parent.width
        label: qsTr("Send to")
        sublabel: qsTr("Final Cut and Resolve read FCPXML. Premiere needs XMEML — not written yet.")

        LKDropdown {
            width: 190
            label: qsTr("Send to")
            options: tab.preferences.targets
            selection: tab.preferences.target
            onActivated: tab.preferences.target = selection
        }
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Open the editor after export")
        sublabel: qsTr("Hands the event straight to Final Cut. Clip aspect ratios are never changed, and the timeline is left for Final Cut to set from your first clip.")
        isOn: tab.preferences.openEditorAfterExport
        onTurned: on => tab.preferences.openEditorAfterExport = on
    }

    SettingsToggle {
        width: parent.width
        isLast: true
        label: qsTr("Write the event file next to the footage")
        sublabel: qsTr("Off writes it to your Documents folder instead.")
        isOn: tab.preferences.writeNextToFootage
        onTurned: on => tab.preferences.writeNextToFootage = on
    }
}
