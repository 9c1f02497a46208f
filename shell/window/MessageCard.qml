pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// A card with a message and a button for each answer. Without answers it is shown until what it reports has ended.
FocusScope {
    id: card

    required property string title
    required property string message
    // The texts of the buttons. The last one gets keyboard focus, so it is the harmless one.
    property list<string> answers

    // index: the answer's place in answers.
    signal answered(int index)

    implicitWidth: 430 // three answers beside each other
    implicitHeight: column.implicitHeight + 48
    Accessible.role: Accessible.Dialog
    Accessible.name: title
    Accessible.description: message

    LKModalPanel {
        anchors.fill: parent
    }

    Column {
        id: column

        x: 24
        y: 24
        width: parent.width - 48
        spacing: 8

        LKText {
            width: parent.width
            text: card.title
            font: LK.font(15, Font.DemiBold)
            wrapMode: Text.Wrap
        }

        LKText {
            width: parent.width
            text: card.message
            font: LK.font(12.5)
            color: LK.palette.textSecondary
            wrapMode: Text.Wrap
        }

        Item {
            width: 1
            height: 8
            visible: card.answers.length > 0
        }

        Flow {
            width: parent.width
            spacing: 8
            layoutDirection: Qt.RightToLeft
            visible: card.answers.length > 0

            Repeater {
                model: card.answers.length

                LKButton {
                    required property int index

                    readonly property int answer: card.answers.length - 1 - index

                    title: card.answers[answer] ?? ""
                    kind: index === 0 ? LKButton.Accent : LKButton.Standard
                    focus: index === 0
                    onActivated: card.answered(answer)
                }
            }
        }
    }
}
