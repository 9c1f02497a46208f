pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// All settings, in four tabs. A change takes effect at once.
FocusScope {
    id: sheet

    required property AppState app
    required property SortEngine engine
    required property int buildNumber

    readonly property PreferencesTabs tabs: PreferencesTabs {
        wanted: sheet.app.preferencesTab
        isForSortTool: sheet.app.isSortToolOpen
    }

    implicitWidth: 640
    implicitHeight: 52 + 430
    Accessible.role: Accessible.Dialog
    Accessible.name: tabs.title

    SortPreferences {
        id: sorting

        engine: sheet.engine
    }

    LKRowKeys {
        id: keys

        rowCount: rows.count
        onWalked: row => {
            sheet.app.preferencesTab = sheet.tabs.names[row];
            rows.itemAt(row).forceActiveFocus(Qt.TabFocusReason);
        }
    }

    LKModalPanel {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    // The background of the tabs: rounded like the card at the corner that both share, square at the others.
    Item {
        objectName: "sidebar"
        x: 1
        y: 53
        width: 169
        height: parent.height - y - 1
        clip: true

        LKRectangle {
            y: -20
            width: parent.width + 20
            height: parent.height + 20
            radius: 9 // the card's, inside its border
            color: LK.palette.surfaceSidebar
        }
    }

    LKText {
        x: 20
        height: 52
        text: sheet.tabs.title
        font: LK.font(13, Font.DemiBold)
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Heading
        isRead: true
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 15
        y: 15
        name: "xmark"
        help: qsTr("Close")
        hoverTint: LK.palette.textPrimary
        onActivated: sheet.app.showPreferences = false
    }

    Rectangle {
        y: 52
        width: parent.width
        height: 1
        color: LK.palette.borderSubtle
    }

    Column {
        id: sidebar

        x: 10
        y: 52 + 12
        width: 150
        spacing: 2
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Preferences")

        Repeater {
            id: rows

            model: sheet.tabs.names

            LKSidebarRow {
                required property int index
                required property string modelData

                width: sidebar.width
                label: modelData
                selected: sheet.tabs.current === modelData
                focus: selected
                focusPolicy: selected ? Qt.StrongFocus : Qt.ClickFocus
                LKAccessible.role: Accessible.PageTab
                onActivated: sheet.app.preferencesTab = modelData
                Keys.onPressed: event => event.accepted = keys.take(event.key, index)
            }
        }
    }

    LKText {
        x: 18
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
        width: sidebar.width - 16
        text: sheet.tabs.scope
        font: LK.font(10.5)
        color: LK.palette.textTertiary
        wrapMode: Text.Wrap
        isRead: true
    }

    Rectangle {
        x: 170
        y: 52
        width: 1
        height: parent.height - 52
        color: LK.palette.borderSubtle
    }

    Flickable {
        id: body

        objectName: "preferencesBody"
        x: 171
        y: 53
        width: parent.width - x
        height: parent.height - y - 1
        contentHeight: general.visible ? general.height + 12 : sortingTab.visible ? sortingTab.height + 12 : importTab.visible ? importTab.height + 12 : height
        interactive: contentHeight > height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.Pane
        Accessible.name: sheet.tabs.current

        T.ScrollBar.vertical: LKScrollBar {
        }

        GeneralPreferences {
            id: general

            x: 20
            y: 4
            width: body.width - 40
            visible: sheet.tabs.current === "General"
            app: sheet.app
            buildNumber: sheet.buildNumber
        }

        AccountPreferences {
            x: 20
            y: 4
            width: body.width - 40
            visible: sheet.tabs.current === "Account"
            app: sheet.app
        }

        SortingPreferences {
            id: sortingTab

            x: 20
            y: 4
            width: body.width - 40
            visible: sheet.tabs.current === "Sorting"
            preferences: sorting
        }

        ImportPreferences {
            id: importTab

            x: 20
            y: 4
            width: body.width - 40
            visible: sheet.tabs.current === "Import"
            engine: sheet.engine
            preferences: sorting
        }
    }
}
