import QtQuick
import Larkspan.Design

// A page of the gallery: what is shown, what to know about it, and its samples in groups.
Column {
    id: page

    property string title
    property string note

    spacing: 20

    Column {
        width: parent.width
        spacing: 4

        LKText {
            text: page.title
            font: LK.font(21, Font.DemiBold)
        }

        LKText {
            width: parent.width
            text: page.note
            visible: text !== ""
            font: LK.font(12)
            color: LK.palette.textSecondary
            wrapMode: Text.Wrap
        }
    }
}
