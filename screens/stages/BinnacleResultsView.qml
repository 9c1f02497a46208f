import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The results of a sort: the list of bins, and beside it the clips of the chosen bin or the review list.
FocusScope {
    id: view

    required property SortEngine engine

    readonly property BinChoices choices: BinChoices {
        engine: view.engine
    }

    focus: true

    Rectangle {
        anchors.fill: bins
        color: LK.palette.surfaceSidebar
    }

    BinList {
        id: bins

        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        width: 236
        focus: true
        engine: view.engine
        onEntered: detail.forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        id: rule

        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: bins.right
        width: 1
        color: LK.palette.borderSubtle
    }

    // Focus stays in here when one of the two views replaces the other.
    Loader {
        id: detail

        readonly property url detailView: bins.reviewShown ? "ReviewListView.qml" : "ClipGridView.qml"

        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: rule.right
        anchors.right: parent.right
        Keys.onLeftPressed: bins.forceActiveFocus(Qt.BacktabFocusReason)
        onDetailViewChanged: detail.setSource(detailView, {
                "engine": view.engine,
                "choices": view.choices
            })
    }
}
