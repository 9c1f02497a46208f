pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Shell

// Our own panel for a folder, or for a file to write: quick places, a field for a path, the list of the open folder, and
// the folder that would be chosen. From anywhere in it Ctrl+L focuses the path, Ctrl+Return accepts, Alt+Up goes up.
FocusScope {
    id: card

    required property FileBrowser browser

    readonly property int headerHeight: 52
    readonly property int footerHeight: browser.isSaving ? 96 : 56

    implicitWidth: 720
    implicitHeight: 500
    Accessible.role: Accessible.Dialog
    Accessible.name: browser.title

    Component.onCompleted: {
        if (browser.isSaving)
            name.select(0, Math.max(0, name.text.lastIndexOf(".")));
    }

    Connections {
        target: card.browser

        // Emitted for the same folder too: its path then replaces the typed text.
        function onVisited() {
            path.text = card.browser.folderPath;
            path.cursorPosition = path.length;
        }
    }

    Shortcut {
        sequence: "Ctrl+L"
        onActivated: {
            path.forceActiveFocus(Qt.ShortcutFocusReason);
            path.selectAll();
        }
    }

    Shortcut {
        sequence: "Alt+Up"
        autoRepeat: false
        onActivated: card.browser.goUp()
    }

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        autoRepeat: false
        onActivated: card.browser.accept()
    }

    LKModalPanel {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    LKText {
        x: 20
        width: parent.width - 40
        height: card.headerHeight
        text: card.browser.title
        font: LK.font(13, Font.DemiBold)
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Heading
        isRead: true
    }

    Rectangle {
        y: card.headerHeight
        width: parent.width
        height: 1
        color: LK.palette.borderSubtle
    }

    FileBrowserPlaces {
        id: places

        objectName: "placeList"
        x: 10
        y: card.headerHeight + 12
        width: 150
        height: parent.height - y - 12
        browser: card.browser
        onPassed: list.forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        x: 170
        y: card.headerHeight
        width: 1
        height: parent.height - y
        color: LK.palette.borderSubtle
    }

    RowLayout {
        id: pathRow

        x: 171 + 12
        y: card.headerHeight + 12
        width: parent.width - x - 12
        spacing: 8

        IconButton {
            name: "chevron.up"
            help: qsTr("Up")
            size: 26
            onActivated: card.browser.goUp()
        }

        LKTextField {
            id: path

            Layout.fillWidth: true
            label: qsTr("Path")
            text: card.browser.folderPath
            onAccepted: card.browser.goTo(text)
        }
    }

    FileBrowserList {
        id: list

        objectName: "folderList"
        x: 171
        y: pathRow.y + pathRow.height + 6
        width: parent.width - x - 1
        height: parent.height - y - card.footerHeight
        focus: !card.browser.isSaving
        browser: card.browser
        onPathBegun: text => {
            path.text = text;
            path.forceActiveFocus(Qt.ShortcutFocusReason);
            path.cursorPosition = text.length;
        }
    }

    Rectangle {
        x: 171
        y: list.y + list.height
        width: parent.width - x
        height: 1
        color: LK.palette.borderSubtle
    }

    RowLayout {
        x: 171 + 12
        y: list.y + list.height + 12
        width: parent.width - x - 12
        height: 26
        visible: card.browser.isSaving
        spacing: 8

        LKText {
            text: qsTr("Name")
            font: LK.font(12)
            color: LK.palette.textSecondary
        }

        LKTextField {
            id: name

            Layout.fillWidth: true
            focus: card.browser.isSaving
            label: qsTr("Name of the file")
            text: card.browser.fileName
            onTextEdited: card.browser.fileName = text
            onAccepted: card.browser.accept()
        }
    }

    RowLayout {
        x: 171 + 12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 15
        width: parent.width - x - 12
        height: 26
        spacing: 8

        LKText {
            id: status

            readonly property bool isProblem: card.browser.problem !== ""

            Layout.fillWidth: true
            text: isProblem ? card.browser.problem : card.browser.status
            font: LK.font(11.5)
            color: isProblem ? LK.palette.danger : LK.palette.textSecondary
            Accessible.role: isProblem ? Accessible.AlertMessage : Accessible.StaticText
            isRead: true
        }

        LKButton {
            title: qsTr("Cancel")
            onActivated: card.browser.cancel()
        }

        LKButton {
            kind: LKButton.Accent
            title: card.browser.prompt
            enabled: card.browser.canAccept
            onActivated: card.browser.accept()
        }
    }
}
