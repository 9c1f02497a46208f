import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// How far a countable piece of work is: what it is, "3 of 12", and a bar.
T.ProgressBar {
    id: control

    property string label
    property int done: 0
    property int total: 0

    implicitWidth: 340
    implicitHeight: 30
    from: 0
    to: 1
    value: total > 0 ? Math.min(done / total, 1) : 0

    readonly property string counter: qsTr("%1 of %2").arg(done).arg(total)

    Accessible.role: Accessible.ProgressBar
    Accessible.name: label
    Accessible.description: counter

    contentItem: GridLayout {
        columns: 2
        columnSpacing: 8
        rowSpacing: 8

        Text {
            Layout.fillWidth: true
            text: control.label
            font: LK.font(12.5, Font.Medium)
            color: LK.palette.textPrimary
            elide: Text.ElideMiddle
            maximumLineCount: 1
            textFormat: Text.PlainText
        }

        Text {
            Layout.alignment: Qt.AlignBaseline
            text: control.counter
            font: LK.font(11)
            color: LK.palette.textTertiary
        }

        Rectangle {
            Layout.columnSpan: 2
            Layout.fillWidth: true
            Layout.preferredHeight: 4
            radius: 2
            color: LK.palette.surfacePressed

            Rectangle {
                width: parent.width * control.value
                height: 4
                radius: 2
                color: LK.palette.accent

                Behavior on width  {
                    LKNumberMotion {
                    }
                }
            }
        }
    }
}
