import QtQuick
import Larkspan.Design

// A filled shape with a line inside its edge, which lies over the fill. A rectangle's own border lies beside it, so that
// a line that is seen through would show what is below the shape instead.
LKRectangle {
    property color stroke: "transparent"

    border.width: 1
    border.color: LK.over(stroke, color)
}
