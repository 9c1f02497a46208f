import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen after an export: the place of the event, and the actions that can follow.
FocusScope {
    id: view

    required property SortEngine engine

    focus: true

    ExportTexts {
        id: texts

        engine: view.engine
    }

    StageTexts {
        id: stage

        engine: view.engine
    }

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 68, 640)
        spacing: 14

        LKFrameMark {
            anchors.horizontalCenter: parent.horizontalCenter
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: stage.done
            font: LK.font(15)
            Accessible.role: Accessible.Heading
            isRead: true
        }

        LKText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Wording.leftToRight(view.engine.exportSummary)
            font: LK.font(11.5)
            color: LK.palette.textSecondary
            elide: Text.ElideMiddle
            hasHelp: false
            isRead: true
            Accessible.description: view.engine.eventPath

            HoverHandler {
                id: hover
            }

            LKToolTip {
                text: view.engine.eventPath
                wanted: hover.hovered
            }
        }

        LKText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: texts.outcome
            font: LK.font(11)
            color: LK.palette.textTertiary
            isRead: true
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 8

            LKButton {
                focus: true
                kind: LKButton.Accent
                title: qsTr("Open in %1").arg(view.engine.targetName)
                onActivated: view.engine.openEvent()
            }

            LKButton {
                title: qsTr("Reveal in Finder")
                onActivated: view.engine.revealEvent()
            }

            LKButton {
                title: qsTr("Export For…")
                onActivated: view.engine.chooseHandoff()
            }

            LKButton {
                visible: view.engine.copyHistory.hasReport
                title: qsTr("Copy Report…")
                onActivated: view.engine.showCopyReport()
            }
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 8

            LKButton {
                kind: LKButton.Ghost
                title: qsTr("Back to the Clips")
                onActivated: view.engine.backToResults()
            }

            LKButton {
                kind: LKButton.Ghost
                title: qsTr("Sort Another Shoot")
                onActivated: view.engine.reset()
            }
        }
    }
}
