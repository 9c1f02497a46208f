import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The strip across the top of a tool: back to the launcher, the projects, Preferences and the account.
FocusScope {
    id: header

    required property AppState app
    required property SortEngine engine
    property bool showsBack: true
    // Room for the window's controls and menu.
    readonly property real trafficLightInset: 124

    // Another project takes the place of the one on show.
    signal projectChosen

    implicitHeight: 44
    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Header")

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: header.trafficLightInset
        anchors.rightMargin: 12
        spacing: 6

        IconButton {
            visible: header.showsBack
            name: "chevron.left"
            help: qsTr("Back to Larkspan")
            hoverTint: LK.palette.textPrimary
            onActivated: header.app.closeTool()
        }

        LKText {
            text: qsTr("Larkspan")
            font: LK.font(12.5, Font.Medium)
            rightPadding: 6
            isRead: true
        }

        HeaderButton {
            id: switcher

            visible: header.app.isSortToolOpen
            title: qsTr("Projects")
            help: qsTr("Switch projects, or start a new one")
            isOpen: projects.visible
            onActivated: projects.visible = !projects.visible

            ProjectMenu {
                id: projects

                objectName: "projects"
                x: 0
                engine: header.engine
                onProjectChosen: header.projectChosen()
            }
        }

        Item {
            Layout.fillWidth: true
        }

        IconButton {
            name: "gearshape.fill"
            help: qsTr("Preferences")
            hoverTint: LK.palette.textPrimary
            onActivated: header.app.openPreferences()
        }

        ProfileDropdown {
            app: header.app
        }
    }
}
