import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Shell

// A tool's card in the launcher. Only the active one can be pressed, anywhere on it.
T.AbstractButton {
    id: card

    required property lkTool tool
    required property bool isActive

    signal activated

    width: 660
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    enabled: isActive
    focusPolicy: Qt.NoFocus // its button takes focus

    onClicked: card.activated()

    LKAccessible.role: Accessible.Grouping
    Accessible.name: tool.name
    Accessible.description: tool.tagline

    background: LKDropShadow {
        shadow: LK.palette.shadowCard
        cornerRadius: 14
    }

    // The light's surface contains the card's content, as hover reaches only the topmost item and its parents.
    contentItem: LKSpotlightCard {
        cornerRadius: 14
        active: card.isActive

        Column {
            anchors.left: parent.left
            anchors.leftMargin: 40
            anchors.right: parent.right
            anchors.rightMargin: 40
            topPadding: 34
            bottomPadding: 34

            ToolTile {
                anchors.horizontalCenter: parent.horizontalCenter
                tool: card.tool
                size: 96
            }

            Item {
                width: 1
                height: 18
            }

            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 9

                LKText {
                    text: card.tool.name
                    font: LK.font(21, Font.DemiBold)
                }

                LKBadge {
                    anchors.verticalCenter: parent.verticalCenter
                    tone: card.tool.ready ? LKBadge.Accent : LKBadge.Neutral
                    text: card.tool.ready ? qsTr("Ready") : qsTr("In development")
                }
            }

            Item {
                width: 1
                height: 8
            }

            LKText {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: card.tool.tagline
                font: LK.font(12.5)
                color: LK.palette.textSecondary
            }

            Item {
                width: 1
                height: 20
            }

            LKButton {
                anchors.horizontalCenter: parent.horizontalCenter
                kind: LKButton.Accent
                title: card.tool.ready ? qsTr("Open %1").arg(card.tool.name) : qsTr("Preview")
                opacity: 1 // the card at the side is dimmed as a whole
                onActivated: card.activated()
            }

            Item {
                width: 1
                height: 16
            }

            LKText {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: card.tool.meta
                font: LK.font(11)
                color: LK.palette.textTertiary
                isRead: true
            }
        }
    }
}
