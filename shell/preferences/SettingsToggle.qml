import QtQuick
import Larkspan.Design

// A setting that is on or off.
LKSettingsRow {
    id: row

    property bool isOn: false

    // The user turned it on or off.
    signal turned(bool on)

    LKToggle {
        label: row.label
        isOn: row.isOn
        onToggled: row.turned(isOn)
    }
}
