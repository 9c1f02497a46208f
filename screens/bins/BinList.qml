pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Screens

// The bins of the shoot, those to look at first. Up and Down walk it, and what they reach is shown at once; Right goes
// into it.
T.Control {
    id: control

    required property SortEngine engine

    readonly property BinListModel bins: BinListModel {
        engine: control.engine
    }

    readonly property bool reviewShown: bins.reviewShown

    signal entered

    focusPolicy: Qt.StrongFocus
    LKAccessible.role: Accessible.List
    Accessible.name: qsTr("Bins")
    Keys.onRightPressed: control.entered()
    Keys.onReturnPressed: control.entered()
    Keys.onEnterPressed: control.entered()
    Keys.onUpPressed: bins.select(Math.max(0, bins.selectedRow - 1))
    Keys.onDownPressed: bins.select(bins.selectedRow + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            bins.select(event.key === Qt.Key_Home ? 0 : bins.rowCount() - 1);
            event.accepted = true;
        }
    }

    ListView {
        anchors.fill: parent
        anchors.margins: 10
        spacing: 2
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        currentIndex: control.bins.selectedRow
        highlightMoveDuration: LK.motion.hover
        model: control.bins
        LKScrollBar.vertical: LKScrollBar {
        }

        delegate: LKSidebarRow {
            id: row

            required property var model

            width: ListView.view.width
            label: row.model.label
            count: row.model.count
            selected: row.model.index === control.bins.selectedRow
            showsFocus: row.selected && control.visualFocus
            showsCount: control.bins.showsCounts
            tone: row.model.isReview ? LKSidebarRow.Warning : LKSidebarRow.Neutral
            focusPolicy: Qt.NoFocus
            onActivated: {
                control.bins.select(row.model.index);
                control.forceActiveFocus(Qt.MouseFocusReason);
            }
        }
    }
}
