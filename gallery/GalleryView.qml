pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Gallery

// The gallery's window: the pages at the side, the looks above, the page itself.
Rectangle {
    id: view

    color: LK.palette.surfaceWindow

    Rectangle {
        id: side

        width: 190
        height: parent.height
        color: LK.palette.surfaceSidebar

        ListView {
            id: list

            anchors.fill: parent
            anchors.margins: 10
            clip: true
            model: Gallery.pages
            boundsBehavior: Flickable.StopAtBounds

            delegate: LKSidebarRow {
                required property string modelData

                width: ListView.view.width
                label: modelData
                selected: Gallery.page === modelData
                onActivated: Gallery.page = modelData
            }
        }

        Rectangle {
            anchors.right: parent.right
            width: 1
            height: parent.height
            color: LK.palette.borderSubtle
        }
    }

    RowLayout {
        id: looks

        anchors.left: side.right
        anchors.right: parent.right
        anchors.margins: 14
        y: 12
        spacing: 8

        LKButton {
            size: LKButton.Sm
            title: Gallery.dark ? "Dark" : "Light"
            onActivated: Gallery.dark = !Gallery.dark
        }

        LKButton {
            size: LKButton.Sm
            kind: Gallery.boring ? LKButton.Accent : LKButton.Standard
            title: "Boring mode"
            onActivated: Gallery.boring = !Gallery.boring
        }

        LKButton {
            size: LKButton.Sm
            kind: Gallery.reducedMotion ? LKButton.Accent : LKButton.Standard
            title: "Reduced motion"
            onActivated: Gallery.reducedMotion = !Gallery.reducedMotion
        }

        Item {
            Layout.fillWidth: true
        }

        Repeater {
            model: [1, 1.25, 1.5, 2]

            LKButton {
                required property real modelData

                size: LKButton.Sm
                kind: scroll.zoom === modelData ? LKButton.Accent : LKButton.Ghost
                title: modelData + "×"
                onActivated: scroll.zoom = modelData
            }
        }
    }

    Flickable {
        id: scroll

        property real zoom: 1

        anchors.left: side.right
        anchors.right: parent.right
        anchors.top: looks.bottom
        anchors.bottom: parent.bottom
        anchors.topMargin: 12
        clip: true
        contentWidth: width
        contentHeight: (page.height + 48) * zoom
        boundsBehavior: Flickable.StopAtBounds

        Loader {
            id: page

            objectName: "page"
            x: 24 * scroll.zoom
            y: 12 * scroll.zoom
            width: scroll.width / scroll.zoom - 48
            scale: scroll.zoom
            transformOrigin: Item.TopLeft
            source: Gallery.pageUrl
            onLoaded: scroll.contentY = 0
        }
    }

    LKScrollBar {
        anchors.right: scroll.right
        anchors.top: scroll.top
        anchors.bottom: scroll.bottom
        size: scroll.visibleArea.heightRatio
        position: scroll.visibleArea.yPosition
    }
}
