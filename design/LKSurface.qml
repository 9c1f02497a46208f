import QtQuick
import Larkspan.Design

// A filled shape with a line inside its edge, drawn over the fill. A rectangle's own border is beside its fill, so a
// translucent one would show what is below the shape instead.
LKRectangle {
    property color stroke: "transparent"

    border.width: 1
    border.color: LK.over(stroke, color)
}
