pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Shell

// The quick places of a file panel. Up and Down select one, Return opens it, Right moves focus to the list.
T.Control {
    id: control

    required property FileBrowser browser

    property int row: 0 // the one that Return opens

    // Right asks for focus to move on.
    signal passed

    focusPolicy: Qt.StrongFocus
    LKAccessible.role: Accessible.List
    Accessible.name: qsTr("Places")
    Keys.onPressed: event => event.accepted = keys.take(event.key, control.row)
    Keys.onRightPressed: control.passed()
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            control.browser.openPlace(control.row);
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            control.browser.openPlace(control.row);
    }
    Keys.onSpacePressed: control.browser.openPlace(control.row)
    onActiveFocusChanged: {
        if (activeFocus && browser.currentPlace >= 0)
            row = browser.currentPlace;
    }

    LKRowKeys {
        id: keys

        rowCount: list.count
        onWalked: row => control.row = row
    }

    ListView {
        id: list

        anchors.fill: parent
        spacing: 2
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        currentIndex: control.row
        highlightMoveDuration: 0
        model: control.browser.places

        T.ScrollBar.vertical: LKScrollBar {
        }

        delegate: LKSidebarRow {
            required property int index
            required property string modelData

            width: ListView.view.width
            label: modelData
            selected: index === control.browser.currentPlace
            showsFocus: index === control.row && control.visualFocus
            focusPolicy: Qt.NoFocus
            onActivated: control.browser.openPlace(index)
        }
    }
}
