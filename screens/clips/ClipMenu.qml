import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The actions on one clip of a list.
LKMenu {
    id: menu

    required property ClipListModel clips
    required property BinChoices choices
    property ClipCard card

    readonly property int row: card ? card.index : -1

    LKMenuItem {
        text: qsTr("Open Preview")
        keys: qsTr("Return")
        onTriggered: menu.clips.open(menu.row)
    }

    BinMenu {
        title: qsTr("Move to")
        choices: menu.choices
        holding: menu.card ? [menu.card.primaryBin] : []
        onChosen: bin => menu.clips.reassign(menu.row, bin)
    }

    BinMenu {
        title: qsTr("Also Tag")
        choices: menu.choices
        holding: menu.card ? menu.card.extraBins : []
        onChosen: bin => menu.clips.toggleExtraBin(menu.row, bin)
    }

    LKMenuItem {
        text: qsTr("Reveal in Finder")
        onTriggered: menu.clips.reveal(menu.row)
    }
}
