import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// The program's build, and what can be done with the sorted shoot.
Item {
    id: footer

    required property SortEngine engine
    required property int buildNumber

    readonly property bool hasActions: engine.stage === SortEngine.Results || engine.stage === SortEngine.Done

    implicitHeight: 44

    ExportChoices {
        id: choices

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

        Text {
            Layout.fillWidth: true
            text: qsTr("Binnacle · build %1").arg(footer.buildNumber)
            font: LK.font(11)
            color: LK.palette.textTertiary
        }

        LKButton {
            visible: footer.hasActions && choices.organizes
            Layout.maximumWidth: 260
            kind: LKButton.Ghost
            title: qsTr("Shoots folder: %1").arg(choices.shootsFolder)
            onActivated: footer.engine.chooseImportRoot()
        }

        LKDropdown {
            visible: footer.hasActions
            Layout.preferredWidth: 150
            label: qsTr("File handling")
            model: choices.handlingLabels
            currentIndex: choices.handling
            onActivated: row => choices.handling = row
        }

        LKButton {
            visible: footer.hasActions
            enabled: footer.engine.hasFolder
            title: qsTr("Sort Again")
            onActivated: footer.engine.sortAgain()
        }

        LKButton {
            visible: footer.hasActions
            enabled: footer.engine.canExport
            kind: LKButton.Accent
            title: qsTr("Export")
            onActivated: footer.engine.exportEvent()
        }
    }
}
