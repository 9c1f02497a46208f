pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A choice of one among a few, shown as its label.
T.ComboBox {
    id: control

    // What the choice is about, for assistive technology.
    property string label

    implicitWidth: Math.max(120, implicitContentWidth + implicitIndicatorWidth + leftPadding + rightPadding + 6)
    implicitHeight: 26
    leftPadding: 9
    rightPadding: 9
    font: LK.font(12.5)
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.ComboBox
    Accessible.name: label

    Keys.onReturnPressed: control.popup.open()
    Keys.onEnterPressed: control.popup.open()

    contentItem: Text {
        text: control.displayText
        font: control.font
        color: LK.palette.textPrimary
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        maximumLineCount: 1
        textFormat: Text.PlainText
    }

    indicator: Text {
        x: control.mirrored ? control.leftPadding : control.width - width - control.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        text: "▾"
        font: LK.font(11.5)
        color: LK.palette.textTertiary
    }

    background: Rectangle {
        radius: 5
        color: control.hovered || control.popup.visible ? LK.palette.surfaceHover : LK.palette.surfaceCard
        border.width: 1
        border.color: LK.palette.borderStrong

        Behavior on color  {
            LKColorMotion {
            }
        }

        LKFocusRing {
            visible: control.visualFocus
        }
    }

    delegate: T.ItemDelegate {
        id: option

        required property int index
        required property string modelData

        width: ListView.view ? ListView.view.width : 0
        implicitHeight: 26
        leftPadding: 9
        rightPadding: 9
        text: modelData
        highlighted: control.highlightedIndex === index

        Accessible.role: Accessible.ListItem
        Accessible.name: text

        contentItem: Text {
            text: option.text
            font: control.font
            color: LK.palette.textPrimary
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        background: Rectangle {
            radius: 4
            color: option.highlighted ? LK.palette.surfaceSelected : "transparent"
        }
    }

    popup: T.Popup {
        y: -height - 4
        width: Math.max(control.width, 160)
        height: contentItem.implicitHeight + 8
        padding: 4

        contentItem: ListView {
            implicitHeight: contentHeight
            model: control.popup.visible ? control.delegateModel : null // qmllint disable
            currentIndex: control.highlightedIndex
            interactive: false
        }

        background: Rectangle {
            radius: 7
            color: LK.palette.surfaceElevated
            border.width: 1
            border.color: LK.palette.borderSubtle
        }
    }
}
