import QtQuick
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The tab for the options of a sort.
Column {
    id: tab

    required property SortPreferences preferences

    readonly property ModelChoice model: ModelChoice {
        engine: tab.preferences.engine
    }

    LKSettingsRow {
        width: parent.width
        label: qsTr("Model")
        sublabel: tab.model.description

        LKSegmented {
            label: qsTr("Model")
            options: tab.model.options
            aiValues: ["cloud"]
            selection: tab.model.tier
            onActivated: value => tab.model.tier = value
        }
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Show clip counts in the sidebar")
        sublabel: qsTr("Off gives you a quieter bin list.")
        isOn: tab.preferences.showClipCounts
        onTurned: on => tab.preferences.showClipCounts = on
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Send unsure clips to Needs a look")
        sublabel: qsTr("Off files them by best guess and never asks.")
        isOn: tab.preferences.sendUnsureToReview
        onTurned: on => tab.preferences.sendUnsureToReview = on
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Split repeated rooms")
        sublabel: qsTr("Kitchen 1 and Kitchen 2 rather than one crowded bin.")
        isOn: tab.preferences.splitRepeatedRooms
        onTurned: on => tab.preferences.splitRepeatedRooms = on
    }

    SettingsToggle {
        width: parent.width
        label: qsTr("Tag open-plan shots twice")
        sublabel: qsTr("A dining shot that shows the kitchen lands in both.")
        isOn: tab.preferences.tagOpenPlanTwice
        onTurned: on => tab.preferences.tagOpenPlanTwice = on
    }

    SettingsToggle {
        width: parent.width
        isLast: true
        label: qsTr("Keep drone clips out of room bins")
        sublabel: qsTr("Aerials stay in Aerial / Drone and nowhere else.")
        isOn: tab.preferences.keepDroneExclusive
        onTurned: on => tab.preferences.keepDroneExclusive = on
    }
}
