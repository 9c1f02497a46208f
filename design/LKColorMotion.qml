import QtQuick
import Larkspan.Design

// A change of colour on the house curve.
ColorAnimation {
    duration: LK.motion.hover
    easing.type: Easing.BezierSpline
    easing.bezierCurve: LK.motion.curve
}
