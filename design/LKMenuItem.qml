import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// An entry of an LKMenu.
T.MenuItem {
    id: item

    // True for a choice that is in effect: a mark is shown before its text.
    property bool marked: false
    // The shortcut for the same action, in the platform's notation.
    property string keys

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 24
    leftPadding: 9
    rightPadding: subMenu ? 26 : 9
    font: LK.font(12)
    hoverEnabled: true
    checkable: marked
    checked: marked
    onToggled: LK.put(item, "checked", marked) // the choice decides what is marked, not the press

    Accessible.name: text
    Accessible.focusable: true
    Accessible.focused: highlighted
    Accessible.description: keys
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onPressAction: {
        if (item.enabled)
            item.clicked();
    }

    contentItem: RowLayout {
        spacing: 24

        LKText {
            Layout.fillWidth: true
            text: (item.marked ? "✓ " : "") + item.text
            font: item.font
            color: item.enabled ? LK.palette.textPrimary : LK.palette.textDisabled
        }

        LKText {
            visible: item.keys !== ""
            text: item.keys
            font: item.font
            color: item.enabled ? LK.palette.textTertiary : LK.palette.textDisabled
        }
    }

    arrow: LKIcon {
        x: item.mirrored ? 9 : item.width - width - 9
        y: (item.height - height) / 2
        visible: item.subMenu !== null
        name: item.mirrored ? "chevron.left" : "chevron.right"
        size: 10
        color: LK.palette.textTertiary
    }

    background: LKRectangle {
        radius: 4
        color: item.down ? LK.palette.surfacePressed : item.highlighted ? LK.palette.surfaceSelected : "transparent"
    }
}
