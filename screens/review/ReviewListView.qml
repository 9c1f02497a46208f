pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// The clips that the tool wasn't sure of, each with why, to settle one by one or all at once. Arrows walk the list, C
// confirms, M chooses another bin, Return and Space open the preview.
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
            const row = list.currentItem as ReviewRow;
            event.accepted = true;
            if (event.key === Qt.Key_Home)
                list.currentIndex = 0;
            else if (event.key === Qt.Key_End)
                list.currentIndex = list.count - 1;
            else if (!row || event.modifiers & (Qt.ControlModifier | Qt.AltModifier))
                event.accepted = false;
            else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space)
                row.previewAsked();
            else if (event.key === Qt.Key_C)
                row.confirmed();
            else if (event.key === Qt.Key_M)
                row.chooseBin();
            else
                event.accepted = false;
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
