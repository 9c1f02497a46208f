import QtQuick
import Larkspan.Design
import Larkspan.Shell

// A tool's glyph on its gradient.
Item {
    id: tile

    required property lkTool tool
    required property real size

    implicitWidth: size
    implicitHeight: size

    ToolTileSurface {
        anchors.fill: parent
        from: tile.tool.gradientFrom
        to: tile.tool.gradientTo
        cornerRadius: tile.size * 0.25
    }

    LKText {
        anchors.centerIn: parent
        text: tile.tool.glyph
        font: LK.font(tile.size * 0.48)
    }
}
