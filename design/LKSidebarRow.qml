import QtQuick
import QtQuick.Layouts
import Larkspan.Design

// A row of a side list: a label, and the number of things that it leads to.
LKPressable {
    id: control

    enum Tone {
        Neutral,
        Warning
    }

    property string label
    property int count: -1 // below 0: none
    property bool selected: false
    property int tone: LKSidebarRow.Neutral
    property bool showsCount: true
    // Shows the focus ring for a list that keeps focus itself and moves it among its rows.
    property bool showsFocus: visualFocus

    readonly property bool isWarning: tone === LKSidebarRow.Warning
    readonly property bool hasCount: showsCount && count >= 0

    words: label
    implicitWidth: 220
    implicitHeight: 26
    leftPadding: 8
    rightPadding: 8
    spacing: 6
    ring.visible: showsFocus
    ring.cornerRadius: 6
    ring.reach: 1

    LKAccessible.role: Accessible.ListItem
    Accessible.name: hasCount ? qsTr("%1, %2").arg(label).arg(count) : label
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.focused: showsFocus

    contentItem: RowLayout {
        spacing: control.spacing

        LKText {
            Layout.fillWidth: true
            text: control.label
            font: LK.font(11.5, control.selected ? Font.Medium : Font.Normal)
            color: control.selected ? LK.palette.textPrimary : LK.palette.textSecondary
        }

        LKDigits {
            visible: control.hasCount
            leftPadding: control.isWarning ? 6 : 0
            rightPadding: leftPadding
            topPadding: control.isWarning ? 2 : 0
            bottomPadding: topPadding
            text: control.count
            font: control.isWarning ? LK.font(10, Font.DemiBold) : LK.font(11)
            color: control.isWarning ? LK.palette.warning : LK.palette.textTertiary
            Accessible.ignored: true // read with the label
            fill: control.isWarning ? LK.palette.warningSubtle : "transparent"
        }
    }

    background: LKRectangle {
        radius: 6
        color: control.selected ? LK.palette.surfaceSelected : control.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }
    }
}
