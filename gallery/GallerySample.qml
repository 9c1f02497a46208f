import QtQuick
import Larkspan.Design

// One thing in one state, with its name under it.
Column {
    id: sample

    default property alias subject: holder.data
    property string caption
    // True if the stored pictures also show the subject hovered, pressed and with keyboard focus.
    property bool interactive: false
    readonly property Item subjectItem: holder.children.length > 0 ? holder.children[0] : null

    objectName: "sample"
    spacing: 8

    Item {
        id: holder

        width: childrenRect.width
        height: childrenRect.height
    }

    LKText {
        width: Math.max(implicitWidth, 1)
        text: sample.caption
        visible: text !== ""
        font: LK.font(10.5)
        color: LK.palette.textTertiary
    }
}
