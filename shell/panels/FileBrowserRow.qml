import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// A row of a file panel's list: a folder, which a click selects and a double click opens, or a file, which is disabled.
T.AbstractButton {
    id: row

    required property string name
    required property bool isFolder
    property bool isClip: !isFolder
    property bool selected: false
    property bool showsFocus: false

    signal entered

    text: LK.literal(name)
    implicitHeight: 26
    leftPadding: 8
    rightPadding: 8
    spacing: 8
    enabled: isFolder
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    onDoubleClicked: row.entered()

    LKAccessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.selectable: isFolder
    Accessible.selected: selected
    Accessible.focusable: isFolder
    Accessible.focused: showsFocus

    // Connected for folders only: screen readers offer every action that has a handler.
    Connections {
        target: row.isFolder ? row.Accessible : null

        function onPressAction() {
            row.entered();
        }
    }

    contentItem: RowLayout {
        spacing: row.spacing

        LKIcon {
            opacity: row.isFolder || row.isClip ? 1 : 0
            name: row.isFolder ? "folder" : "play.fill"
            size: 14
            color: row.isFolder ? LK.palette.textSecondary : LK.palette.textDisabled
        }

        LKText {
            Layout.fillWidth: true
            text: row.name
            font: LK.font(12)
            color: row.isFolder ? LK.palette.textPrimary : LK.palette.textDisabled
        }
    }

    background: LKRectangle {
        radius: 6
        color: row.selected ? LK.palette.surfaceSelected : row.hovered && row.isFolder ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }

        LKFocusRing {
            visible: row.showsFocus
            cornerRadius: 6
            reach: 1
        }
    }
}
