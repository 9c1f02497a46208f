pragma ComponentBehavior: Bound
import QtQml.Models
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The bins to choose from. Those that hold already are marked.
LKMenu {
    id: menu

    required property BinChoices choices
    property list<string> holding

    signal chosen(string bin)

    // Not a Repeater, which would put them into no menu.
    property Instantiator entries: Instantiator {
        model: menu.choices.names

        delegate: LKMenuItem {
            required property string modelData

            text: modelData
            marked: menu.holding.includes(modelData)
            onTriggered: menu.chosen(modelData)
        }

        onObjectAdded: (index, object) => menu.insertItem(index, object)
        onObjectRemoved: (index, object) => menu.removeItem(object)
    }
}
