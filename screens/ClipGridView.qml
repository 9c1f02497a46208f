pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The clips of the chosen bin, as many beside each other as fit. Arrows walk it.
GridView {
    id: grid

    required property SortEngine engine

    readonly property int gap: 12
    readonly property int leastWidth: 168
    readonly property int padding: 14
    readonly property int columns: Math.max(1, Math.floor((width - 2 * padding + gap) / (leastWidth + gap)))

    objectName: "clips"
    topMargin: padding
    bottomMargin: padding - gap
    leftMargin: padding
    cellWidth: Math.floor((width - 2 * padding + gap) / columns)
    cellHeight: (clips.isReview ? 152 : 124) + gap
    clip: true
    activeFocusOnTab: true
    keyNavigationEnabled: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: LK.motion.hover

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Clips")

    LKScrollBar.vertical: LKScrollBar {
    }

    model: ClipListModel {
        id: clips

        engine: grid.engine
        source: ClipListModel.SelectedBin
    }

    delegate: ClipCard {
        id: card

        width: grid.cellWidth - grid.gap
        height: grid.cellHeight - grid.gap
        showsReason: clips.isReview
        showsFocus: card.GridView.isCurrentItem && grid.activeFocus
        onActivated: {
            grid.currentIndex = card.index;
            grid.forceActiveFocus(Qt.MouseFocusReason);
        }
    }
}
