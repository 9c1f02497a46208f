pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Shell

// The list of the open folder. Arrows, Home, End, the page keys and typed letters select a folder, Return and Right open
// it, Backspace and Left go up.
T.Control {
    id: control

    required property FileBrowser browser

    readonly property LKTypeAhead typeAhead: LKTypeAhead {
    }
    readonly property int rowHeight: 26
    readonly property int pageRows: Math.max(1, Math.floor(list.height / rowHeight) - 1)

    // The first character of a path was typed into the list.
    signal pathBegun(string text)

    function walkTo(row: int) {
        browser.select(Math.max(0, Math.min(row, browser.entries.folderCount - 1)));
    }

    function takeKey(event: var) {
        const row = browser.selectedRow;
        // A held key moves the selection, but opens nothing twice.
        const opens = !event.isAutoRepeat && event.modifiers === (event.modifiers & Qt.KeypadModifier);
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Down:
            walkTo(row + 1);
            return;
        case Qt.Key_Up:
            if (event.modifiers & Qt.AltModifier)
                break;
            walkTo(row - 1);
            return;
        case Qt.Key_Home:
            walkTo(0);
            return;
        case Qt.Key_End:
            walkTo(browser.entries.folderCount - 1);
            return;
        case Qt.Key_PageDown:
            walkTo(Math.max(row, 0) + pageRows);
            return;
        case Qt.Key_PageUp:
            walkTo(row - pageRows);
            return;
        case Qt.Key_Right:
            if (opens)
                browser.enter(row);
            return;
        case Qt.Key_Left:
        case Qt.Key_Backspace:
            if (opens)
                browser.goUp();
            return;
        case Qt.Key_Return:
        case Qt.Key_Enter:
            if (!opens)
                break;
            if (row >= 0)
                browser.enter(row);
            else
                browser.accept();
            return;
        }
        if (event.text === "/" || event.text === "~") {
            control.pathBegun(event.text);
            return;
        }
        if (typeAhead.takes(event.text, event.modifiers)) {
            const found = typeAhead.find(browser.entries.folderNames, row, event.text);
            if (found >= 0)
                browser.select(found);
            return;
        }
        event.accepted = false;
    }

    focusPolicy: Qt.StrongFocus
    LKAccessible.role: Accessible.List
    Accessible.name: browser.folderName
    Accessible.description: browser.note
    Keys.onPressed: event => control.takeKey(event)

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

    Text {
        anchors.centerIn: parent
        width: parent.width - 40
        visible: text !== ""
        text: control.browser.note
        font: LK.font(12)
        color: LK.palette.textTertiary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }
}
