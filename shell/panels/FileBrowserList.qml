pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Shell

// The list of the open folder. FolderKeys says what its keys do.
T.Control {
    id: control

    required property FileBrowser browser

    readonly property int rowHeight: 26
    readonly property FolderKeys folderKeys: FolderKeys {
        entries: control.browser.entries
        pageRows: Math.max(1, Math.floor(list.height / control.rowHeight) - 1)
        onSelected: row => control.browser.select(row)
        onEntered: row => control.browser.enter(row)
        onUpDue: control.browser.goUp()
        onAcceptDue: control.browser.accept()
        onPathBegun: text => control.pathBegun(text)
    }

    // The first character of a path was typed into the list.
    signal pathBegun(string text)

    focusPolicy: Qt.StrongFocus
    LKAccessible.role: Accessible.List
    Accessible.name: browser.folderName
    Accessible.description: browser.note
    Keys.onPressed: event => event.accepted = control.folderKeys.take(event.key, event.modifiers, event.text, event.isAutoRepeat, control.browser.selectedRow)

    background: Item {
        LKFocusRing {
            reach: 0
            visible: control.visualFocus && control.browser.selectedRow < 0
        }
    }

    ListView {
        id: list

        anchors.fill: parent
        leftMargin: 6
        rightMargin: 6
        topMargin: 6
        bottomMargin: 6
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        currentIndex: control.browser.selectedRow
        highlightMoveDuration: 0
        model: control.browser.entries

        T.ScrollBar.vertical: LKScrollBar {
        }

        // On the list and not on its rows: a press below the last row counts as well.
        TapHandler {
            parent: list
            onTapped: {
                control.browser.select(-1);
                control.forceActiveFocus(Qt.MouseFocusReason);
            }
        }

        delegate: FileBrowserRow {
            required property int index

            width: ListView.view.width - 12
            height: control.rowHeight
            isClip: !isFolder && !control.browser.isSaving
            selected: index === control.browser.selectedRow
            showsFocus: selected && control.visualFocus
            onClicked: {
                control.browser.select(index);
                control.forceActiveFocus(Qt.MouseFocusReason);
            }
            onEntered: control.browser.enter(index)
        }
    }

    LKText {
        anchors.centerIn: parent
        width: parent.width - 40
        visible: text !== ""
        text: control.browser.note
        font: LK.font(12)
        color: LK.palette.textTertiary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
}
