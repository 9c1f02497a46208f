pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The switcher: starts a new project, and reopens, renames and removes the sorted ones.
LKPopover {
    id: menu

    required property SortEngine engine

    property string editingID

    readonly property ProjectListModel projects: ProjectListModel {
        engine: menu.engine
    }

    readonly property RemovedProject removed: RemovedProject {
        engine: menu.engine
        onRowDue: row => {
            rows.forceLayout();
            menu.focusRow(row + 1);
        }
    }

    // Another project, or a new one, takes the place of the one on show.
    signal projectChosen

    // Moves keyboard focus. Row 0 is the new project, and the sorted ones follow.
    function focusRow(row: int) {
        if (row === 0) {
            newProject.forceActiveFocus(Qt.BacktabFocusReason);
        } else {
            rows.positionViewAtIndex(row - 1, ListView.Contain);
            rows.itemAtIndex(row - 1)?.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    padding: 8
    LKAccessible.name: qsTr("Projects")
    onClosed: {
        editingID = "";
        removed.forget();
    }

    LKRowKeys {
        id: keys

        rowCount: menu.projects.count + 1
        onWalked: row => menu.focusRow(row)
    }

    // Lets the popover close first.
    Timer {
        id: opening

        property string projectID

        interval: 0
        onTriggered: {
            menu.engine.openProject(projectID);
            menu.projectChosen();
        }
    }

    Column {
        width: 300

        LKText {
            text: qsTr("Projects")
            font: LK.font(13, Font.DemiBold)
            leftPadding: 8
            topPadding: 4
            Accessible.role: Accessible.Heading
            isRead: true
        }

        LKText {
            width: parent.width
            text: qsTr("Reopen a sorted shoot, or start a new one.")
            font: LK.font(11)
            color: LK.palette.textTertiary
            leftPadding: 8
            topPadding: 2
            bottomPadding: 8
            wrapMode: Text.Wrap
            isRead: true
        }

        MenuActionRow {
            id: newProject

            width: parent.width
            focus: true
            Keys.onDownPressed: event => keys.take(event.key, 0)
            symbol: "plus"
            title: qsTr("New Project")
            detail: qsTr("Clear the workspace and start fresh")
            onActivated: {
                menu.engine.reset();
                menu.projectChosen();
                menu.close();
            }
        }

        LKText {
            visible: rows.count > 0
            text: qsTr("RECENT")
            font: LK.font(10, Font.DemiBold)
            color: LK.palette.textTertiary
            leftPadding: 8
            topPadding: 10
            bottomPadding: 4
        }

        ListView {
            id: rows

            objectName: "projectList"

            width: parent.width
            height: Math.min(contentHeight, 244)
            visible: count > 0
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            model: menu.projects
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Sorted shoots")

            T.ScrollBar.vertical: LKScrollBar {
            }

            delegate: ProjectRow {
                id: project

                required property int index
                required property string projectId

                width: rows.width
                isEditing: menu.editingID === projectId

                onActiveFocusChanged: {
                    if (activeFocus)
                        rows.positionViewAtIndex(index, ListView.Contain);
                }
                Keys.onDownPressed: event => keys.take(event.key, index + 1)
                Keys.onUpPressed: event => keys.take(event.key, index + 1)
                onOpen: {
                    opening.projectID = projectId;
                    menu.close();
                    opening.start();
                }
                onBeginEdit: menu.editingID = projectId
                onCancelEdit: endEdit()
                onCommitEdit: name => {
                    menu.engine.renameProject(projectId, name);
                    endEdit();
                }
                onRemove: menu.removed.remove(projectId, index)

                // The field disappears, and focus with it; the row takes focus.
                function endEdit() {
                    menu.editingID = "";
                    project.forceActiveFocus(Qt.PopupFocusReason);
                }
            }
        }

        LKText {
            visible: rows.count === 0
            width: parent.width
            text: qsTr("Sorted shoots are saved here so you can reopen them without re-running.")
            font: LK.font(11)
            color: LK.palette.textSecondary
            padding: 8
            wrapMode: Text.Wrap
            isRead: true
        }

        RowLayout {
            width: parent.width
            visible: menu.removed.isOffered
            spacing: 8

            LKText {
                Layout.fillWidth: true
                text: menu.removed.note
                font: LK.font(11)
                color: LK.palette.textSecondary
                leftPadding: 8
                topPadding: 8
                bottomPadding: 8
                Accessible.role: Accessible.AlertMessage
                isRead: true
            }

            LKButton {
                Layout.rightMargin: 6
                size: LKButton.Sm
                title: qsTr("Undo")
                onActivated: menu.removed.restore()
                Keys.onUpPressed: event => keys.take(event.key, keys.rowCount)
            }
        }

        Shortcut {
            enabled: menu.opened && menu.removed.isOffered
            sequence: "Ctrl+Z"
            onActivated: menu.removed.restore()
        }

        Rectangle {
            width: parent.width
            height: 1
            color: LK.palette.borderSubtle
        }

        LKText {
            width: parent.width
            text: qsTr("Sort results are cached on this Mac. Footage and thumbnails are not.")
            font: LK.font(10.5)
            color: LK.palette.textTertiary
            leftPadding: 8
            rightPadding: 8
            topPadding: 8
            bottomPadding: 2
            wrapMode: Text.Wrap
            isRead: true
        }
    }
}
