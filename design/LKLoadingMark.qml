pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// Nine cells that pulse as a chevron on its way to the right.
Grid {
    id: mark

    property bool round: false
    // Without motion the cells are faint and still.
    property bool still: false
    readonly property bool animating: !still && LKShown.now

    columns: 3
    spacing: 1.5

    Repeater {
        model: LK.motion.chevron

        LKRectangle {
            id: cell

            required property int modelData

            width: 4
            height: 4
            radius: mark.round ? 2 : 1
            color: LK.palette.textPrimary
            opacity: mark.still ? 0.14 : 0.12

            SequentialAnimation {
                running: mark.animating
                onStopped: cell.opacity = Qt.binding(() => mark.still ? 0.14 : 0.12)

                PauseAnimation {
                    duration: cell.modelData
                }
                SequentialAnimation {
                    loops: Animation.Infinite

                    NumberAnimation {
                        target: cell
                        property: "opacity"
                        from: 0.12
                        to: 1
                        duration: LK.motion.cellPulse
                        easing.type: Easing.BezierSpline
                        easing.bezierCurve: LK.motion.easeInOut
                    }
                    NumberAnimation {
                        target: cell
                        property: "opacity"
                        from: 1
                        to: 0.12
                        duration: LK.motion.cellPulse
                        easing.type: Easing.BezierSpline
                        easing.bezierCurve: LK.motion.easeInOut
                    }
                }
            }
        }
    }
}
