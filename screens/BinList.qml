pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The bins of the shoot, those to look at first. Up and Down walk it, and what they reach is shown at once.
ListView {
    id: list

    required property SortEngine engine

    leftMargin: 10
    rightMargin: 10
    topMargin: 10
    bottomMargin: 10
    spacing: 2
    clip: true
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    currentIndex: bins.selectedRow
    highlightMoveDuration: LK.motion.hover
    keyNavigationEnabled: false
    Keys.onUpPressed: bins.select(bins.selectedRow - 1)
    Keys.onDownPressed: bins.select(bins.selectedRow + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            bins.select(event.key === Qt.Key_Home ? 0 : list.count - 1);
            event.accepted = true;
        }
    }

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Bins")

    LKScrollBar.vertical: LKScrollBar {
    }

    model: BinListModel {
        id: bins

        engine: list.engine
    }

    delegate: LKSidebarRow {
        id: row

        required property var model

        width: ListView.view.width - 20
        label: row.model.label
        count: row.model.count
        selected: row.model.index === bins.selectedRow
        showsFocus: row.selected && list.activeFocus
        showsCount: bins.showsCounts
        tone: row.model.isReview ? LKSidebarRow.Warning : LKSidebarRow.Neutral
        focusPolicy: Qt.NoFocus
        onActivated: {
            bins.select(row.model.index);
            list.forceActiveFocus(Qt.MouseFocusReason);
        }
    }
}
