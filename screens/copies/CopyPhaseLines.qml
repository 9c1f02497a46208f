import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The two phases of a running copy, each with its amount and speed, and the time left.
Column {
    id: lines

    required property CopyPhases phases

    component Line: Item {
        id: line

        property alias title: label.text
        property alias figures: digits.text
        property bool isCurrent: false

        width: parent.width
        height: Math.max(label.implicitHeight, digits.implicitHeight)

        LKText {
            id: label

            font: LK.font(11)
            color: digits.color
            isRead: true
        }

        LKDigits {
            id: digits

            anchors.right: parent.right
            color: line.isCurrent ? LK.palette.textPrimary : LK.palette.textTertiary
        }
    }

    width: 340
    spacing: 6

    Line {
        title: qsTr("Copy")
        figures: lines.phases.copied
        isCurrent: lines.phases.isRunning && !lines.phases.isVerifying
    }

    Line {
        title: qsTr("Verify")
        figures: lines.phases.verified
        isCurrent: lines.phases.isVerifying
    }

    Line {
        title: qsTr("Time left")
        figures: lines.phases.timeLeft
    }
}
