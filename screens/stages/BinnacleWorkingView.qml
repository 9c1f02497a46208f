pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen of a running sort: its progress, and the clips that are done.
FocusScope {
    id: view

    required property SortEngine engine

    focus: true

    ScanTickScheduler {
        id: ticks
    }

    // A sort goes on while its screen is hidden, but makes no sound then.
    function followVisibility() {
        if (view.visible)
            ticks.start(view.engine);
        else
            ticks.stop();
    }

    Component.onCompleted: followVisibility()
    onVisibleChanged: followVisibility()

    readonly property size tile: Qt.size(160, 90)
    readonly property int gap: 10
    readonly property list<string> statusLines: [qsTr("Reading the frames…"), qsTr("Walking every room…"), qsTr("Kitchen or bathroom?…"), qsTr("Sniffing out drone shots…"), qsTr("Finding the agent in frame…"), qsTr("Peeking through doorways…"), qsTr("Untangling the open-plan…"), qsTr("Sorting wides from details…"), qsTr("Weighing the close calls…"), qsTr("Tallying up the bins…"), qsTr("Almost got it…")]

    Column {
        anchors.centerIn: parent
        padding: 34
        spacing: 22

        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 13

            LKLoadingState {
                anchors.horizontalCenter: parent.horizontalCenter
                messages: view.statusLines
            }

            LKProgressBar {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 340
                label: Wording.of(qsTr("Sorting %1"), [view.engine.folderName])
                done: view.engine.done
                total: view.engine.total
            }

            GridView {
                id: peek

                objectName: "peek"
                anchors.horizontalCenter: parent.horizontalCenter
                // The last column's gap is outside the visible part.
                width: 3 * view.tile.width + 2 * view.gap
                height: 300

                // A card is copied before the first of its clips can land.
                CopyPhaseLines {
                    parent: peek
                    anchors.horizontalCenter: parent.horizontalCenter
                    visible: phases.isRunning
                    phases: CopyPhases {
                        id: phases

                        engine: view.engine
                    }
                }

                rightMargin: -view.gap
                cellWidth: view.tile.width + view.gap
                cellHeight: view.tile.height + view.gap
                clip: true
                model: ClipListModel {
                    engine: view.engine
                    source: ClipListModel.AllClips
                }
                onContentHeightChanged: {
                    scroll.to = Math.max(0, peek.contentHeight - peek.height);
                    scroll.restart();
                }

                LKNumberMotion {
                    id: scroll

                    target: peek
                    property: "contentY"
                    duration: LK.motion.step
                }

                delegate: Item {
                    id: cell

                    required property string fileName
                    required property url thumbnail

                    width: view.tile.width
                    height: view.tile.height

                    ClipPicture {
                        anchors.fill: parent
                        cornerRadius: 4
                        picture: cell.thumbnail
                    }

                    Accessible.role: Accessible.Graphic
                    Accessible.name: cell.fileName
                }

                add: Transition {
                    LKNumberMotion {
                        property: "opacity"
                        from: 0
                        to: 1
                        duration: LK.motion.reveal
                    }
                    LKNumberMotion {
                        property: "scale"
                        from: 0.94
                        to: 1
                        duration: LK.motion.reveal
                    }
                }
            }
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("A peek as they land — the full set is browsable when the sort finishes.")
            font: LK.font(11)
            color: LK.palette.textTertiary
            isRead: true
        }

        LKButton {
            anchors.horizontalCenter: parent.horizontalCenter
            focus: true
            kind: LKButton.Ghost
            title: qsTr("Cancel")
            onActivated: view.engine.reset()
        }
    }
}
