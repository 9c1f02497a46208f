import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// A setting: its label at the leading end, its control at the trailing one.
T.Control {
    id: row

    property string label
    property string sublabel
    property bool isLast: false
    // Takes only the room that it needs.
    default property alias control: slot.data

    implicitWidth: Math.max(texts.implicitWidth + layout.spacing + slot.implicitWidth, 240)
    implicitHeight: layout.implicitHeight + topPadding + bottomPadding
    verticalPadding: 12

    LKAccessible.role: Accessible.Grouping
    Accessible.name: label
    Accessible.description: sublabel

    RowLayout {
        id: layout

        anchors.fill: parent
        anchors.topMargin: row.topPadding
        anchors.bottomMargin: row.bottomPadding
        spacing: 16

        Column {
            id: texts

            Layout.fillWidth: true
            spacing: 3

            LKText {
                width: parent.width
                text: row.label
                font: LK.font(13)
                wrapMode: Text.Wrap
                maximumLineCount: 3
            }

            LKText {
                visible: row.sublabel !== ""
                width: parent.width
                text: row.sublabel
                font: LK.font(11)
                color: LK.palette.textTertiary
                wrapMode: Text.Wrap
                maximumLineCount: 6
            }
        }

        Row {
            id: slot
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        visible: !row.isLast
        color: LK.palette.borderSubtle
    }
}
