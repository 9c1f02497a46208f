import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// The program's build, the model of the next sort, and what can be done with the sorted shoot.
Item {
    id: footer

    required property SortEngine engine
    required property int buildNumber

    readonly property bool modelNoteOpen: note.visible

    implicitHeight: 44

    StageTexts {
        id: texts

        engine: footer.engine
    }

    ModelChoice {
        id: model

        engine: footer.engine
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: 1
        color: LK.palette.borderSubtle
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        spacing: 10

        LKText {
            Layout.fillWidth: true
            text: qsTr("Binnacle · build %1").arg(footer.buildNumber)
            font: LK.font(11)
            color: LK.palette.textTertiary
        }

        LKText {
            text: qsTr("Model")
            font: LK.font(11)
            color: LK.palette.textSecondary
        }

        LKSegmented {
            label: qsTr("Model")
            size: LKButton.Sm
            options: model.options
            selection: model.tier
            aiValues: ["cloud"]
            onActivated: value => model.tier = value
        }

        IconButton {
            name: "info.circle"
            size: 18
            help: qsTr("What this model does")
            LKAccessible.role: Accessible.ButtonDropDown
            LKAccessible.expanded: note.visible
            isOpen: note.visible
            onActivated: note.visible ? note.close() : note.open()

            LKPopover {
                id: note

                LKAccessible.name: qsTr("What this model does")
                contentItem: ModelNoteCard {
                    model: model
                }
            }
        }

        Rectangle {
            Layout.preferredWidth: 1
            Layout.preferredHeight: 18
            visible: texts.hasShoot
            color: LK.palette.borderSubtle
        }

        LKButton {
            visible: texts.hasShoot
            enabled: footer.engine.hasFolder
            title: qsTr("Sort Again")
            onActivated: footer.engine.sortAgain()
        }

        LKButton {
            visible: texts.hasShoot
            enabled: footer.engine.canExport
            kind: LKButton.Accent
            title: qsTr("Export")
            onActivated: footer.engine.exportEvent()
        }
    }
}
