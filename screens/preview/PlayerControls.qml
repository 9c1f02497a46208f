import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// The controls over a playing clip: play and pause, its position and duration, and the volume.
FocusScope {
    id: controls

    required property ClipPlayer player

    implicitHeight: 40

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.55)
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 14
        spacing: 10

        IconButton {
            focus: true
            name: controls.player.playing ? "pause.fill" : "play.fill"
            helpAbove: true
            help: controls.player.playing ? qsTr("Pause") : qsTr("Play")
            tint: "white"
            size: 26
            onActivated: controls.player.toggle()
        }

        LKText {
            text: controls.player.positionText
            font: LK.font(11)
            color: "white"
        }

        PlayerSlider {
            id: scrub

            Layout.fillWidth: true
            label: qsTr("Position")
            to: Math.max(0.01, controls.player.duration)
            stepSize: 1
            onMoved: controls.player.seek(value, false)
            onPressedChanged: {
                if (!pressed)
                    controls.player.seek(value, true);
            }

            // Follows the clip, except while the user drags the knob.
            Binding on value  {
                when: !scrub.pressed
                value: controls.player.position
                restoreMode: Binding.RestoreNone
            }
        }

        LKText {
            text: controls.player.durationText
            font: LK.font(11)
            color: "white"
        }

        IconButton {
            name: PlayerVolume.muted || PlayerVolume.level === 0 ? "speaker.slash.fill" : "speaker.fill"
            helpAbove: true
            help: PlayerVolume.muted ? qsTr("Sound on") : qsTr("Sound off")
            tint: "white"
            onActivated: PlayerVolume.muted = !PlayerVolume.muted
        }

        PlayerSlider {
            Layout.preferredWidth: 70
            label: qsTr("Volume")
            stepSize: 0.1
            value: PlayerVolume.level
            onMoved: {
                PlayerVolume.muted = false;
                PlayerVolume.level = value;
            }
        }
    }
}
