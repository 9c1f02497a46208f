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
