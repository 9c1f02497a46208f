import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Larkspan.Design

// Shows the progress of countable work: a label, "3 of 12", and a bar.
T.ProgressBar {
    id: control

    property string label
    property int done: 0
    property int total: 0

    implicitWidth: 340
    implicitHeight: 30
    from: 0
    to: 1
    value: total > 0 ? Math.max(0, Math.min(done / total, 1)) : 0

    readonly property string counter: qsTr("%1 of %2").arg(done).arg(total)

    Accessible.name: label
    Accessible.description: counter

    contentItem: Item {
        RowLayout {
            width: parent.width
            height: 18
            spacing: 8

            LKText {
                Layout.fillWidth: true
                text: control.label
                font: LK.font(12.5, Font.Medium)
                elide: Text.ElideMiddle
            }

            LKDigits {
                text: control.counter
            }
        }

        LKRectangle {
            y: 26
            width: parent.width
            height: 4
            radius: 2
            color: LK.palette.surfacePressed

            LKRectangle {
                objectName: "fill"
                x: control.mirrored ? parent.width - width : 0
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
