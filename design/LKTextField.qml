import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// One line of text to write.
T.TextField {
    id: field

    // The field's name for assistive technology; the placeholder if this is empty.
    property string label

    readonly property bool visualFocus: activeFocus && (focusReason === Qt.TabFocusReason || focusReason === Qt.BacktabFocusReason)

    implicitWidth: 160
    implicitHeight: 26
    leftPadding: 8
    rightPadding: 8
    verticalAlignment: TextInput.AlignVCenter
    font: LK.font(12.5)
    color: LK.palette.textPrimary
    selectionColor: LK.palette.accentSolid
    selectedTextColor: LK.palette.textOnAccent
    placeholderTextColor: LK.palette.textTertiary
    opacity: enabled ? 1 : 0.45
    selectByMouse: true
    hoverEnabled: true

    Accessible.name: label !== "" ? label : placeholderText

    LKText {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        font: field.font
        color: field.placeholderTextColor
        horizontalAlignment: field.horizontalAlignment
        verticalAlignment: Text.AlignVCenter
    }

    background: LKSurface {
        radius: 5
        color: LK.palette.surfaceCard
        stroke: field.activeFocus ? LK.palette.accent : LK.palette.borderStrong

        LKColorBehavior on border.color  {
        }

        LKFocusRing {
            visible: field.visualFocus
        }
    }
}
