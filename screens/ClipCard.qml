import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// One clip in the grid: its first frame, its name and length, and why to look at it if there is a reason.
T.AbstractButton {
    id: card

    required property int index
    required property string name
    required property string fileName
    required property string duration
    required property url thumbnail
    required property string extraBin
    required property string reviewReason
    property bool showsReason: false
    property bool showsFocus: visualFocus

    signal activated

    implicitWidth: 168
    implicitHeight: 124
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    onClicked: card.activated()

    Accessible.role: Accessible.ListItem
    Accessible.name: !showsReason ? qsTr("%1, %2").arg(fileName).arg(duration) : qsTr("%1, %2, %3").arg(fileName).arg(duration).arg(reviewReason)

    contentItem: ColumnLayout {
        spacing: 0

        ClipPicture {
            Layout.fillWidth: true
            Layout.preferredHeight: 95
            picture: card.thumbnail
            cornerRadius: 8
            roundsBottom: false

            Text {
                anchors.left: parent.left
                anchors.bottom: parent.bottom
                anchors.margins: 6
                width: Math.min(implicitWidth, parent.width - 12)
                visible: card.extraBin !== ""
                text: card.extraBin
                font: LK.font(9.5)
                color: "white"
                elide: Text.ElideRight
                leftPadding: 6
                rightPadding: 6
                topPadding: 2
                bottomPadding: 2
                textFormat: Text.PlainText

                Rectangle {
                    anchors.fill: parent
                    z: -1
                    radius: 4
                    color: Qt.rgba(0, 0, 0, 0.35)
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: 6
            Layout.leftMargin: 8
            Layout.rightMargin: 8
            spacing: 6

            Text {
                Layout.fillWidth: true
                text: card.name
                font: LK.font(10.5)
                color: LK.palette.textPrimary
                elide: Text.ElideMiddle
                maximumLineCount: 1
                textFormat: Text.PlainText
            }

            Text {
                text: card.duration
                font: LK.font(10.5)
                color: LK.palette.textTertiary
            }
        }

        Text {
            Layout.fillWidth: true
            Layout.leftMargin: 8
            Layout.rightMargin: 8
            Layout.topMargin: 2
            visible: card.showsReason
            text: card.reviewReason
            font: LK.font(9.5)
            color: LK.palette.textSecondary
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        Item {
            Layout.fillHeight: true
        }
    }

    background: Rectangle {
        radius: 8
        color: LK.palette.surfaceCard
        border.width: 1
        border.color: card.hovered ? LK.palette.borderStrong : LK.palette.borderSubtle

        Behavior on border.color  {
            LKColorMotion {
            }
        }

        LKFocusRing {
            visible: card.showsFocus
            cornerRadius: 8
        }
    }
}
