pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// A grid of the clips of the chosen bin. Arrows, Home, End and the page keys move to another clip; ClipKeys says what
// other keys do.
GridView {
    id: grid

    required property SortEngine engine
    required property BinChoices choices

    readonly property int gap: 12
    readonly property int leastWidth: 168
    readonly property int padding: 14
    readonly property int columns: Math.max(1, Math.floor((width - 2 * padding + gap) / (leastWidth + gap)))
    readonly property ClipListModel clips: ClipListModel {
        engine: grid.engine
        source: ClipListModel.SelectedBin
        // Shows another bin from its first clip on.
        onModelReset: {
            grid.currentIndex = count > 0 ? 0 : -1;
            grid.positionViewAtBeginning();
        }
    }
    readonly property StageTexts texts: StageTexts {
        engine: grid.engine
    }
    // The menus are created at their first use.
    property BinMenu moveMenu
    property ClipMenu clipMenu

    function openMoveMenu(card: ClipCard, at: point) {
        if (!moveMenu)
            moveMenu = moveMenuComponent.createObject(grid);
        moveMenu.card = card;
        moveMenu.popup(grid, card.mapToItem(grid, at));
    }

    function openClipMenu(card: ClipCard, at: point) {
        if (!clipMenu)
            clipMenu = clipMenuComponent.createObject(grid);
        clipMenu.card = card;
        clipMenu.popup(grid, card.mapToItem(grid, at));
    }

    // A menu closes with the card that it is for.
    function dismissMenusOf(card: ClipCard) {
        for (const menu of [moveMenu, clipMenu]) {
            if (menu && menu.card === card)
                menu.dismiss();
        }
    }

    // A menu that closes gives focus back, unless it has opened the preview.
    function takeFocusBack() {
        if (!engine.hasPreview)
            grid.forceActiveFocus(Qt.PopupFocusReason);
    }

    objectName: "clips"
    topMargin: padding
    bottomMargin: padding - gap
    leftMargin: padding
    cellWidth: Math.floor((width - 2 * padding + gap) / columns)
    cellHeight: 124 + gap
    clip: true
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: LK.motion.hover

    Keys.onPressed: event => {
        grid.forceLayout(); // a clip may just have gone
        event.accepted = rowKeys.take(event.key, currentIndex) || clipKeys.take(event.key, event.modifiers, currentItem ? currentIndex : -1);
    }

    LKRowKeys {
        id: rowKeys

        rowCount: grid.clips.count
        rowsInPage: Math.max(1, Math.floor(grid.height / grid.cellHeight)) * grid.columns
        takesArrows: false
        takesEnds: true
        onWalked: row => grid.currentIndex = row
    }

    ClipKeys {
        id: clipKeys

        onOpenDue: grid.clips.open(grid.currentIndex)
        onMoveDue: grid.openMoveMenu(grid.currentItem as ClipCard, Qt.point(8, 24))
        onMenuDue: grid.openClipMenu(grid.currentItem as ClipCard, Qt.point(8, 24))
    }

    Accessible.role: Accessible.List
    Accessible.name: qsTr("Clips")

    LKScrollBar.vertical: LKScrollBar {
    }

    model: clips

    // Shown while the bin is empty.
    LKText {
        parent: grid
        anchors.centerIn: parent
        width: Math.min(implicitWidth, grid.width - 2 * grid.padding)
        visible: grid.count === 0
        text: grid.texts.noClips
        font: LK.font(12.5)
        color: LK.palette.textTertiary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        isRead: true
    }

    delegate: ClipCard {
        id: card

        width: grid.cellWidth - grid.gap
        height: grid.cellHeight - grid.gap
        showsFocus: card.GridView.isCurrentItem && grid.activeFocus
        Component.onDestruction: grid.dismissMenusOf(card)
        onActivated: {
            grid.currentIndex = card.index;
            grid.forceActiveFocus(Qt.MouseFocusReason);
            grid.clips.open(card.index);
        }
        onMoveAsked: at => {
            grid.currentIndex = card.index;
            grid.forceActiveFocus(Qt.MouseFocusReason);
            grid.openMoveMenu(card, at);
        }
        onMenuAsked: at => {
            grid.currentIndex = card.index;
            grid.forceActiveFocus(Qt.MouseFocusReason);
            grid.openClipMenu(card, at);
        }
    }

    Component {
        id: moveMenuComponent

        BinMenu {
            property ClipCard card

            title: qsTr("Move to")
            choices: grid.choices
            holding: card ? [card.primaryBin] : []
            onChosen: bin => grid.clips.reassign(card.index, bin)
            onClosed: grid.takeFocusBack()
        }
    }

    Component {
        id: clipMenuComponent

        ClipMenu {
            title: card ? card.name : ""
            clips: grid.clips
            choices: grid.choices
            onClosed: grid.takeFocusBack()
        }
    }
}
