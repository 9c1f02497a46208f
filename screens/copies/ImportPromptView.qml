pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// Offers to bring in the footage of a card that was found. Nothing is copied before the editor accepts here.
FocusScope {
    id: prompt

    required property SortEngine engine
    // The card on offer. clipCount is valid once isCounted is true.
    required property string displayName
    required property bool isCounted
    required property int clipCount

    readonly property alias body: offer.body

    // True while no other overlay is above the prompt.
    property bool isTopmost: true
    readonly property alias answersKeys: offer.answersKeys

    signal accept
    signal decline
    signal openPreferences

    implicitWidth: 360
    implicitHeight: column.implicitHeight + 2 * 28

    ImportOffer {
        id: offer

        engine: prompt.engine
        displayName: prompt.displayName
        isCounted: prompt.isCounted
        clipCount: prompt.clipCount
        isInReach: prompt.isTopmost && prompt.activeFocus
        onLookBegan: waiting.focus = true
        onLookedAt: primary.forceActiveFocus(Qt.PopupFocusReason)
        onAccepted: prompt.accept()
        onPreferencesDue: prompt.openPreferences()
    }

    // Has keyboard focus until keys may answer, and ignores all keys.
    Item {
        id: waiting

        focus: true
        Keys.onPressed: event => event.accepted = true
    }

    Accessible.role: Accessible.Dialog
    Accessible.name: offer.title
    Accessible.description: offer.description

    LKModalPanel {
        anchors.fill: parent
        cornerRadius: 14

        // Keeps the pointer from the items below the card.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onWheel: event => event.accepted = true
        }
    }

    Column {
        id: column

        anchors.centerIn: parent
        width: parent.width
        spacing: 14

        LKRectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 44
            height: 44
            radius: 10
            color: LK.palette.accentSubtle

            LKIcon {
                anchors.centerIn: parent
                name: offer.symbol
                size: 28
                color: LK.palette.accent
            }
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: offer.title
            font: LK.font(15, Font.DemiBold)
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 300
            // Reserves two lines, so that the buttons stay in place when the count comes.
            height: Math.max(implicitHeight, Math.ceil(2 * metrics.lineSpacing))
            text: offer.body
            font: LK.font(12.5)
            color: LK.palette.textSecondary
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.Wrap
            maximumLineCount: 6

            FontMetrics {
                id: metrics

                font: LK.font(12.5)
            }
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: text !== ""
            text: offer.checking
            font: LK.font(11)
            color: LK.palette.textTertiary
            isRead: true
        }

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: offer.hasWarned
            width: 300
            height: notice.implicitHeight

            LKText {
                id: notice

                anchors.fill: parent
                visible: offer.warns
                text: offer.warning
                elide: Text.ElideNone // its height is never limited
                font: LK.font(12.5, Font.Medium)
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 8

            LKButton {
                size: LKButton.Lg
                title: qsTr("Not Now")
                onActivated: prompt.decline()
            }

            LKButton {
                id: primary

                kind: LKButton.Accent
                size: LKButton.Lg
                title: offer.answer
                onActivated: offer.accept()
            }
        }
    }
}
