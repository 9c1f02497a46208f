pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Screens

// The shoots that were sorted before, to open again or to forget.
FocusScope {
    id: list

    required property SortEngine engine

    implicitWidth: 360
    implicitHeight: column.implicitHeight
    visible: projects.count > 0

    readonly property ProjectListModel projects: ProjectListModel {
        engine: list.engine
    }

    Column {
        id: column

        width: parent.width
        spacing: 6

        Text {
            text: qsTr("RECENT")
            font: LK.font(10, Font.DemiBold)
            color: LK.palette.textTertiary
            leftPadding: 8
        }

        ListView {
            id: rows

            width: parent.width
            height: Math.min(contentHeight, 4 * 40)
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: list.projects
            activeFocusOnTab: true
            keyNavigationEnabled: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Sorted shoots")

            T.ScrollBar.vertical: LKScrollBar {
            }

            delegate: T.AbstractButton {
                id: row

                required property int index
                required property string projectId
                required property string name
                required property string detail

                width: rows.width
                implicitHeight: 40
                leftPadding: 8
                rightPadding: 8
                hoverEnabled: true
                focus: ListView.isCurrentItem

                onClicked: list.engine.openProject(projectId)
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                Keys.onDeletePressed: list.engine.deleteProject(projectId)

                text: name
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("%1, %2").arg(name).arg(detail)

                contentItem: RowLayout {
                    Column {
                        Layout.fillWidth: true
                        spacing: 2

                        Text {
                            width: parent.width
                            text: row.name
                            font: LK.font(12, Font.Medium)
                            color: LK.palette.textPrimary
                            elide: Text.ElideRight
                            textFormat: Text.PlainText
                        }

                        Text {
                            width: parent.width
                            text: row.detail
                            font: LK.font(10.5)
                            color: LK.palette.textTertiary
                            elide: Text.ElideRight
                        }
                    }

                    LKButton {
                        kind: LKButton.Ghost
                        size: LKButton.Sm
                        focusPolicy: Qt.NoFocus
                        opacity: row.hovered || hovered ? 1 : 0
                        title: qsTr("Remove")
                        onActivated: list.engine.deleteProject(row.projectId)
                    }
                }

                background: Rectangle {
                    radius: 6
                    color: row.hovered ? LK.palette.surfaceHover : "transparent"

                    LKFocusRing {
                        anchors.margins: -1
                        visible: row.activeFocus
                        cornerRadius: 6
                    }
                }
            }
        }
    }
}
