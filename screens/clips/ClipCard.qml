import QtQuick
import Larkspan.Design
import Larkspan.Screens

// One clip in the grid: its first frame, its name, its second bin, and a way to move it while the pointer is there.
LKPressable {
    id: card

    required property int index
    required property string name
    required property string fileName
    required property string duration
    required property url thumbnail
    required property string primaryBin
    required property string extraBin
    required property list<string> extraBins
    property bool showsFocus: visualFocus

    readonly property bool hovering: hover.hovered

    // The menu of bins, or the menu of all actions, is to open at this point, in the card's coordinates.
    signal moveAsked(point at)
    signal menuAsked(point at)

    implicitWidth: 168
    implicitHeight: 124
    focusPolicy: Qt.NoFocus
    words: name
    ring.visible: showsFocus
    ring.cornerRadius: 8

    LKAccessible.role: Accessible.ListItem
    Accessible.name: extraBin === "" ? Wording.of(qsTr("%1, %2"), [fileName, duration]) : Wording.of(qsTr("%1, %2, also %3"), [fileName, duration, extraBin])
    Accessible.selectable: true
    Accessible.selected: showsFocus
    Accessible.focusable: true
    Accessible.focused: showsFocus

    HoverHandler {
        id: hover
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: event => card.menuAsked(event.position)
    }

    background: LKSurface {
        radius: 8
        color: card.down ? Qt.tint(LK.palette.surfaceCard, LK.palette.surfacePressed) : card.hovering ? Qt.tint(LK.palette.surfaceCard, LK.palette.surfaceHover) : LK.palette.surfaceCard
        stroke: card.hovering ? LK.palette.borderStrong : LK.palette.borderSubtle

        LKColorBehavior on color  {
            duration: card.fillMotion
        }

        LKColorBehavior on border.color  {
        }
    }

    ClipPicture {
        id: picture

        width: parent.width
        height: 95
        picture: card.thumbnail
        cornerRadius: 8
        roundsBottom: false
        crops: true // a card may be wider than sixteen to nine
    }

    LKText {
        id: tag

        anchors.left: picture.left
        anchors.bottom: picture.bottom
        anchors.margins: 6
        width: Math.min(Math.ceil(implicitWidth), picture.width - 12)
        visible: card.extraBin !== ""
        hasHelp: false // the card has a tool tip of its own
        text: card.extraBin
        font: LK.font(9.5)
        color: "white"
        leftPadding: 6
        rightPadding: 6
        topPadding: 2
        bottomPadding: 2

        ClipPicture {
            anchors.fill: parent
            z: -1
            picture: tag.visible ? card.thumbnail : ""
            cornerRadius: 4
            isFrosted: true
            crops: true
            whole: Qt.size(picture.width, picture.height)
            place: Qt.point(tag.x, tag.y)
        }
    }

    LKOverlayButton {
        id: move

        anchors.right: picture.right
        anchors.top: picture.top
        anchors.margins: 6
        implicitWidth: implicitContentWidth + leftPadding + rightPadding
        implicitHeight: 18
        leftPadding: 7
        rightPadding: 7
        visible: card.hovering
        focusPolicy: Qt.NoFocus
        words: qsTr("Move")
        onActivated: card.moveAsked(move.mapToItem(card, 0, move.height + 4))

        LKAccessible.role: Accessible.ButtonMenu
        Accessible.name: Wording.of(qsTr("Move %1"), [card.name])

        contentItem: LKText {
            text: move.words
            font: LK.font(9.5, Font.Medium)
            color: "white"
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
    }

    LKText {
        anchors.top: picture.bottom
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        hasHelp: false
        text: card.name
        font: LK.font(10.5)
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideMiddle
    }

    LKToolTip {
        text: card.name === "" ? "" : Wording.of(qsTr("%1 · %2"), [card.fileName, card.duration])
        wanted: card.hovering && !move.hovered
    }
}
