import QtQuick
import Larkspan.Design
import Larkspan.Screens

// Plays a clip. The controls over the picture are shown while the pointer is over it or the clip is paused.
FocusScope {
    id: view

    required property PreviewClip clip
    // True if the clip's shape is nearly that of its place.
    property bool fillsPlace: false

    readonly property alias player: player

    function toggle() {
        player.toggle();
    }

    focus: true
    Component.onCompleted: clip.playWith(player)

    HoverHandler {
        id: hover
    }

    ClipPlayer {
        id: player

        volume: PlayerVolume.level
        muted: PlayerVolume.muted
        keepsAspect: !view.fillsPlace
    }

    PlayerView {
        anchors.fill: parent
        visible: player.problem === ""
        player: player
        Accessible.role: Accessible.Graphic
        Accessible.name: view.clip.name
    }

    LKText {
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 80)
        visible: player.problem !== ""
        text: player.problem
        font: LK.font(12.5)
        color: "white"
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
        isRead: true
    }

    PlayerControls {
        id: controls

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        focus: true
        visible: player.problem === ""
        opacity: hover.hovered || !player.playing ? 1 : 0
        player: player

        Behavior on opacity  {
            LKNumberMotion {
            }
        }
    }
}
