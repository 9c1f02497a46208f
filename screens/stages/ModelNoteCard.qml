import QtQuick
import Larkspan.Design
import Larkspan.Screens

// A note on the chosen model: what it does, where, and how well.
Column {
    id: card

    required property ModelChoice model

    width: 260
    spacing: 8

    Accessible.role: Accessible.Note
    Accessible.name: model.title
    Accessible.description: qsTr("%1 %2").arg(model.description).arg(model.accuracy)

    LKText {
        width: parent.width
        text: card.model.title
        font: LK.font(12, Font.DemiBold)
        wrapMode: Text.Wrap
    }

    LKText {
        width: parent.width
        text: card.model.description
        font: LK.font(11)
        color: LK.palette.textSecondary
        wrapMode: Text.Wrap
    }

    LKText {
        width: parent.width
        text: card.model.accuracy
        font: LK.font(10.5)
        color: LK.palette.textTertiary
        wrapMode: Text.Wrap
    }
}
