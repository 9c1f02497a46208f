import QtQuick
import Larkspan.Design

// One sorted shoot: opened by a press, renamed and removed by the buttons that show under the pointer or the keyboard.
LKPressable {
    id: row

    required property string name
    required property string detail
    required property bool isCurrent
    property bool isEditing: false

    readonly property bool showsButtons: hovered || activeFocus || rename.hovered || remove.hovered || rename.activeFocus || remove.activeFocus

    signal open
    signal beginEdit
    signal commitEdit(string name)
    signal cancelEdit
    signal remove

    words: name
    implicitWidth: 260
    implicitHeight: 42
    leftPadding: 8
    rightPadding: 8
    ring.cornerRadius: 6
    ring.reach: 1

    onActivated: {
        if (!row.isEditing)
            row.open();
    }
    Keys.onDeletePressed: row.remove()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F2) {
            row.beginEdit();
            event.accepted = true;
        }
    }

    LKAccessible.role: Accessible.ListItem
    Accessible.description: detail
    Accessible.selectable: true
    Accessible.selected: isCurrent

    onIsEditingChanged: {
        if (isEditing) {
            editName.text = row.name;
            editName.forceActiveFocus(Qt.PopupFocusReason);
            editName.selectAll();
        }
    }

    contentItem: ProjectLines {
        symbol: row.isCurrent ? "checkmark.circle.fill" : "rectangle.stack"
        tint: row.isCurrent ? LK.palette.accent : LK.palette.textSecondary
        title: row.name
        showsTitle: !row.isEditing
        isReached: row.visualFocus
        detail: row.detail
        trailing: 52
    }

    background: LKRectangle {
        radius: 6
        color: row.down ? LK.palette.surfacePressed : row.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }
    }

    LKTextField {
        id: editName

        x: row.leftPadding + 22
        y: 2
        width: row.width - x - 60
        implicitHeight: 20
        visible: row.isEditing
        font: LK.font(12, Font.Medium)
        label: qsTr("Project name")
        placeholderText: qsTr("Project name")
        // Handled here, since a Return that reaches the row would open the project.
        Keys.onReturnPressed: row.commitEdit(text)
        Keys.onEnterPressed: row.commitEdit(text)
        Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
        Keys.onEscapePressed: row.cancelEdit()
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        IconButton {
            visible: row.isEditing
            name: "checkmark"
            help: qsTr("Save name")
            onActivated: row.commitEdit(editName.text)
        }

        IconButton {
            id: rename

            visible: !row.isEditing
            opacity: row.showsButtons ? 1 : 0
            name: "pencil"
            help: qsTr("Rename")
            onActivated: row.beginEdit()
        }

        IconButton {
            id: remove

            visible: !row.isEditing
            opacity: row.showsButtons ? 1 : 0
            name: "trash"
            help: qsTr("Remove from recents")
            hoverTint: LK.palette.danger
            onActivated: row.remove()
        }
    }
}
