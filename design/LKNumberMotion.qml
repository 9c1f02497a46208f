import QtQuick
import Larkspan.Design

// A change of place, size or opacity on the house curve.
NumberAnimation {
    duration: LK.motion.hover
    easing.type: Easing.BezierSpline
    easing.bezierCurve: LK.motion.curve
}
