pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// The clips under review, each with its reason, to settle one by one or all at once. Arrows, Home and End move to
// another clip; ClipKeys says what other keys do.
FocusScope {
    id: view

    required property SortEngine engine
    required property BinChoices choices

    readonly property ClipListModel clips: ClipListModel {
        engine: view.engine
        source: ClipListModel.SelectedBin
    }

    readonly property StageTexts texts: StageTexts {
        engine: view.engine
    }

    // Settling removes the row, and focus with it; the list takes focus back.
    function settle(step: var) {
        list.forceActiveFocus(Qt.OtherFocusReason);
        step();
    }

    focus: true

    RowLayout {
        id: header

        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 14
        height: 26
        spacing: 12

        LKText {
            Layout.fillWidth: true
            text: view.texts.unsure
            font: LK.font(11.5)
            Accessible.role: Accessible.Heading
            isRead: true
        }

        LKButton {
            title: qsTr("Confirm All")
            enabled: view.clips.count > 0
            onActivated: view.settle(() => view.engine.confirmAll())
        }
    }

    ListView {
        id: list

        objectName: "review"
        anchors.top: header.bottom
        anchors.topMargin: 10
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        clip: true
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: LK.motion.hover
        model: view.clips

        Accessible.role: Accessible.List
        Accessible.name: qsTr("Clips to look at")

        Keys.onPressed: event => {
            list.forceLayout(); // a row may just have gone
            event.accepted = rowKeys.take(event.key, list.currentIndex) || clipKeys.take(event.key, event.modifiers, list.currentItem ? list.currentIndex : -1);
        }

        LKRowKeys {
            id: rowKeys

            rowCount: view.clips.count
            takesArrows: false
            takesEnds: true
            onWalked: row => list.currentIndex = row
        }

        ClipKeys {
            id: clipKeys

            isReview: true
            onOpenDue: (list.currentItem as ReviewRow).previewAsked()
            onConfirmDue: (list.currentItem as ReviewRow).confirmed()
            onMoveDue: (list.currentItem as ReviewRow).chooseBin()
        }

        LKScrollBar.vertical: LKScrollBar {
        }

        delegate: ReviewRow {
            id: row

            width: ListView.view.width
            choices: view.choices
            showsFocus: row.ListView.isCurrentItem && list.activeFocus
            onPreviewAsked: {
                list.currentIndex = row.index;
                view.settle(() => view.clips.open(row.index));
            }
            onReassigned: bin => view.settle(() => view.clips.reassign(row.index, bin))
            onChoiceOver: list.forceActiveFocus(Qt.PopupFocusReason)
            onConfirmed: view.settle(() => view.clips.confirm(row.index))
        }
    }
}
