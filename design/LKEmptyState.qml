import QtQuick
import Larkspan.Design

// The content of a screen that has nothing to show, or only an error: a mark, a title, a text and one button.
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

    // Measures the height of one line of the description.
    LKText {
        id: oneLine

        visible: false
        text: " "
        font: LK.font(12.5)
    }

    Column {
        id: column

        width: parent.width

        LKFrameMark {
            objectName: "mark"

            anchors.horizontalCenter: parent.horizontalCenter
            border.color: state.tone === LKEmptyState.Error ? LK.palette.danger : LK.palette.textTertiary
        }

        LKText {
            width: parent.width
            topPadding: 18
            text: state.title
            font: LK.font(15, Font.DemiBold)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            maximumLineCount: 3
        }

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: state.description !== ""
            width: Math.min(parent.width, 420)
            height: about.implicitHeight - about.spacing // no spacing below the last line

            LKText {
                id: about

                readonly property real spacing: 3

                width: parent.width
                topPadding: 8
                text: state.description
                font: LK.font(12.5)
                color: LK.palette.textSecondary
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                maximumLineCount: 12
                lineHeight: oneLine.implicitHeight + spacing
                lineHeightMode: Text.FixedHeight
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

        LKText {
            visible: state.footnote !== ""
            width: parent.width
            topPadding: 14
            text: state.footnote
            font: LK.font(11)
            color: LK.palette.textTertiary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            maximumLineCount: 4
        }
    }
}
