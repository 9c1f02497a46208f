pragma ComponentBehavior: Bound
import QtQml.Models
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// A menu of all bins. Those that the clip is in are marked.
LKMenu {
    id: menu

    required property BinChoices choices
    property list<string> holding

    signal chosen(string bin)

    // An Instantiator, since a Repeater can't insert its items into a menu.
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
