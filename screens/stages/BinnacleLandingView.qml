import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen before a shoot: a folder is dropped here, or chosen.
FocusScope {
    id: landing

    required property SortEngine engine

    focus: true

    readonly property bool dropTargeted: dropArea.containsDrag

    ShootDrop {
        id: shoot

        engine: landing.engine
    }

    DropArea {
        id: dropArea

        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => {
            if (shoot.accepts(drop.urls)) {
                // The footage stays where it is, whatever the source proposed.
                drop.accept(Qt.CopyAction);
                shoot.take(drop.urls);
            }
        }
    }

    Rectangle {
        objectName: "dropFrame"
        anchors.fill: parent
        color: "transparent"
        border.width: 2
        border.color: LK.palette.accent
        opacity: landing.dropTargeted ? 1 : 0

        Behavior on opacity  {
            LKNumberMotion {
            }
        }
    }

    LKEmptyState {
        anchors.centerIn: parent
        focus: true
        title: qsTr("Drop a shoot folder here")
        description: qsTr("Binnacle reads every clip in place, builds your bins, and sorts each shot by room and type. Footage isn't uploaded or moved.")
        actionTitle: qsTr("Choose Folder")
        footnote: qsTr("Or drag a folder from Finder onto this window")
        onActivated: landing.engine.chooseFolder()
    }
}
