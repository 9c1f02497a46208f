import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The page of a tool in development: its description, and a form that offers to tell when it ships.
FocusScope {
    id: page

    required property AppState app
    required property lkTool tool
    property Component header: null

    Rectangle {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    Loader {
        width: parent.width
        height: 44
        sourceComponent: page.header
    }

    Flickable {
        id: flickable

        anchors.fill: parent
        anchors.topMargin: 44 // below the header
        contentHeight: Math.max(height, column.implicitHeight + 48)
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            anchors.centerIn: parent
            width: Math.min(520, parent.width - 64)

            ToolTile {
                anchors.horizontalCenter: parent.horizontalCenter
                tool: page.tool
                size: 96
            }

            Item {
                width: 1
                height: 18
            }

            LKBadge {
                anchors.horizontalCenter: parent.horizontalCenter
                tone: LKBadge.Neutral
                text: qsTr("In development")
            }

            Item {
                width: 1
                height: 12
            }

            LKText {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: page.tool.name
                font: LK.font(21, Font.DemiBold)
                isRead: true
            }

            Item {
                width: 1
                height: 8
            }

            LKText {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                lineHeight: 1.25
                text: page.tool.blurb
                font: LK.font(13)
                color: LK.palette.textSecondary
                isRead: true
            }

            Item {
                width: 1
                height: 20
            }

            Column {
                width: parent.width
                spacing: 8

                Repeater {
                    model: page.tool.bullets

                    Row {
                        id: bullet

                        required property string modelData

                        width: parent ? parent.width : 0
                        spacing: 9

                        LKRectangle {
                            y: 6
                            width: 5
                            height: 5
                            radius: 2.5
                            color: LK.palette.accent
                        }

                        LKText {
                            width: bullet.width - 14
                            wrapMode: Text.Wrap
                            text: bullet.modelData
                            font: LK.font(12.5)
                            isRead: true
                        }
                    }
                }
            }

            Item {
                width: 1
                height: 26
            }

            ShipNotice {
                anchors.horizontalCenter: parent.horizontalCenter
                app: page.app
                toolName: page.tool.name
            }
        }
    }
}
