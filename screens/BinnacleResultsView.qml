import QtQuick
import Larkspan.Design
import Larkspan.Screens

// What the editor sees of a finished sort: the bins down the side, the clips of the chosen one beside them.
FocusScope {
    id: view

    required property SortEngine engine

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
    }

    Rectangle {
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: bins.right
        width: 1
        color: LK.palette.borderSubtle
    }

    ClipGridView {
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.left: bins.right
        anchors.leftMargin: 1
        anchors.right: parent.right
        engine: view.engine
    }
}
