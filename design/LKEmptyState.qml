import QtQuick
import Larkspan.Design

// What a screen says when it has nothing to show, or nothing good.
FocusScope {
    id: state

    enum Tone {
        Neutral,
        Error
    }

    property string title
    property string description
    property int tone: LKEmptyState.Neutral
    property string actionTitle
    property string footnote

    readonly property Item actionItem: action

    signal activated

    implicitWidth: 420
    implicitHeight: column.implicitHeight

    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: description

    Column {
        id: column

        width: parent.width

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 44
            height: 28
            radius: 3
            color: "transparent"
            border.pixelAligned: false
            border.width: 2.4
            border.color: state.tone === LKEmptyState.Error ? LK.palette.danger : LK.palette.textTertiary
            antialiasing: true
        }

        Text {
            width: parent.width
            topPadding: 18
            text: state.title
            font: LK.font(15, Font.DemiBold)
            color: LK.palette.textPrimary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }

        Text {
            width: parent.width
            topPadding: 8
            text: state.description
            font: LK.font(12.5)
            color: LK.palette.textSecondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeight: fontMetrics.lineSpacing + 3
            lineHeightMode: Text.FixedHeight
            textFormat: Text.PlainText

            FontMetrics {
                id: fontMetrics

                font: LK.font(12.5)
            }
        }

        Item {
            width: 1
            height: 20
            visible: action.visible
        }

        LKButton {
            id: action

            focus: true

            anchors.horizontalCenter: parent.horizontalCenter
            visible: state.actionTitle !== ""
            title: state.actionTitle
            kind: LKButton.Accent
            size: LKButton.Lg
            onActivated: state.activated()
        }

        Text {
            visible: state.footnote !== ""
            width: parent.width
            topPadding: 14
            text: state.footnote
            font: LK.font(11)
            color: LK.palette.textTertiary
            horizontalAlignment: Text.AlignHCenter
            textFormat: Text.PlainText
        }
    }
}
