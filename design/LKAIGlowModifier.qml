import QtQuick
import Larkspan.Design

// A breathing halo behind something that the cloud model touches: put the content into it, or anchor it behind an item.
// Not used by a screen yet; the gallery shows it.
Item {
    id: glow

    property real cornerRadius: 5
    property bool active: false
    default property alias content: holder.data

    readonly property bool breathing: active && !LK.boringMode
    // From the faint halo (0) to the full one (1).
    property real breath

    implicitWidth: holder.childrenRect.width
    implicitHeight: holder.childrenRect.height

    LKHalo {
        anchors.fill: parent
        visible: glow.active
        cornerRadius: glow.cornerRadius + 2
        blur: 6
        opacity: 0.18 + (0.55 - 0.18) * glow.breath
        scale: 1.02 + (1.09 - 1.02) * glow.breath
    }

    SequentialAnimation on breath  {
        loops: Animation.Infinite
        running: glow.breathing && glow.LKShown.now
        onStopped: glow.breath = 0

        NumberAnimation {
            from: 0
            to: 1
            duration: LK.motion.breath
            easing.type: Easing.BezierSpline
            easing.bezierCurve: LK.motion.easeInOut
        }
        NumberAnimation {
            from: 1
            to: 0
            duration: LK.motion.breath
            easing.type: Easing.BezierSpline
            easing.bezierCurve: LK.motion.easeInOut
        }
    }

    Item {
        id: holder

        anchors.fill: parent
    }
}
