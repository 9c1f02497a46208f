import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// One clip large: to play it, and to change its bins. Nothing of it is decoded before play is pressed, and closing the
// preview, by whatever way, ends the playing at once.
FocusScope {
    id: modal

    required property SortEngine engine

    readonly property bool playing: wantsPlaying && clip.present
    property bool wantsPlaying: false

    readonly property PreviewClip clip: PreviewClip {
        engine: modal.engine
        onPresentChanged: modal.wantsPlaying = false
    }
    readonly property BinChoices choices: BinChoices {
        engine: modal.engine
    }

    onPlayingChanged: {
        if (playing)
            player.setSource("PreviewPlayer.qml", {
                    "clip": modal.clip,
                    "fillsPlace": still.fillsPlace
                });
        else
            player.setSource("");
    }

    readonly property real cornerRadius: 10

    implicitWidth: 760
    implicitHeight: 428 + 66
    focus: true

    Keys.onSpacePressed: {
        if (modal.playing)
            (player.item as PreviewPlayer).toggle();
        else
            modal.wantsPlaying = true;
    }

    Accessible.role: Accessible.Dialog
    Accessible.name: clip.name
    Accessible.description: clip.details

    LKModalPanel {
        anchors.fill: parent
        cornerRadius: modal.cornerRadius
    }

    Rectangle {
        id: media

        width: parent.width
        height: 428
        color: "black"
        layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
        layer.effect: LKRounded {
            upper: modal.cornerRadius // qmllint disable
        }

        Image {
            id: still

            // Sixteen to nine is half a point lower than the place, which is no reason for a line below it.
            readonly property bool fillsPlace: Math.abs(width * implicitHeight - height * implicitWidth) < implicitWidth

            anchors.fill: parent
            source: modal.clip.thumbnail
            fillMode: fillsPlace ? Image.Stretch : Image.PreserveAspectFit
            cache: false
            visible: !modal.playing
        }

        LKOverlayButton {
            id: play

            anchors.centerIn: parent
            width: 44
            height: 44
            visible: !modal.playing
            focus: true
            words: qsTr("Play")
            cornerRadius: height / 2
            stroke: Qt.rgba(1, 1, 1, 0.4)
            onActivated: modal.wantsPlaying = true

            contentItem: Item {
                LKIcon {
                    anchors.centerIn: parent
                    name: "play.fill"
                    size: 20
                    color: "white"
                }
            }
        }

        Loader {
            id: player

            anchors.fill: parent
            onLoaded: player.forceActiveFocus(Qt.OtherFocusReason)
        }
    }

    // The card's edge, which the picture lies over.
    Item {
        anchors.fill: media
        clip: true

        LKRectangle {
            width: modal.width
            height: modal.height
            radius: modal.cornerRadius
            color: "transparent"
            border.width: 1
            border.color: LK.palette.borderSubtle
        }
    }

    RowLayout {
        anchors.top: media.bottom
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        spacing: 10

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            LKText {
                Layout.fillWidth: true
                text: modal.clip.name
                font: LK.font(12.5)
                elide: Text.ElideMiddle
            }

            LKText {
                Layout.fillWidth: true
                text: modal.clip.details
                font: LK.font(11)
                color: LK.palette.textSecondary
            }
        }

        BinDropdown {
            Layout.preferredWidth: 168
            label: qsTr("Bin")
            names: modal.choices.names
            bin: modal.clip.primaryBin
            onChosen: bin => modal.clip.reassign(bin)
        }

        BinDropdown {
            Layout.preferredWidth: 168
            label: qsTr("Second bin")
            noneText: qsTr("No second bin")
            names: modal.choices.names
            bin: modal.clip.secondBin
            onChosen: bin => modal.clip.setSecondBin(bin)
        }

        LKButton {
            title: qsTr("Done")
            onActivated: modal.engine.closePreview()
        }
    }
}
