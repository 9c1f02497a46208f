pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Screens

// The bins of the shoot, with the review list on top. Up, Down, Home and End choose one, whose clips are shown at once.
// Right, Return and Enter move focus to these clips.
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
    Keys.onPressed: event => event.accepted = keys.take(event.key, bins.selectedRow)

    LKRowKeys {
        id: keys

        rowCount: control.bins.count
        takesEnds: true
        onWalked: row => control.bins.select(row)
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
