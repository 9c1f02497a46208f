import QtQuick
import Larkspan.Design

// A card whose light follows the pointer, under its content. Without content it is a surface to anchor to.
Item {
    id: surface

    property real cornerRadius: 10
    property bool active: true
    default property alias content: holder.data

    readonly property bool lights: active && !LK.boringMode
    // The light's strength as drawn, 0 to 1. Drops to 0 without a fade when the card may not light any more.
    readonly property real strength: lights ? motion.strength : 0
    readonly property color lightColor: spotlight.colorAt(LK.palette.accent, LK.palette.info, motion.nx)
    readonly property bool hasPointer: spotlight.hasPointer

    // An only item may fill the card: the card asks for that item's implicit size, which doesn't depend on the card's.
    readonly property Item onlyItem: holder.children.length === 1 ? holder.children[0] : null

    implicitWidth: onlyItem && onlyItem.implicitWidth > 0 ? onlyItem.implicitWidth : holder.childrenRect.width
    implicitHeight: onlyItem && onlyItem.implicitHeight > 0 ? onlyItem.implicitHeight : holder.childrenRect.height

    function followPointer() {
        if (hover.hovered && lights)
            spotlight.follow(hover.point.position);
        else
            spotlight.leave();
    }

    HoverHandler {
        id: hover

        onHoveredChanged: surface.followPointer()
        onPointChanged: surface.followPointer()
    }

    LKSpotlight {
        id: spotlight

        card: Qt.size(surface.width, surface.height)
    }

    QtObject {
        id: motion

        property real nx: spotlight.nx
        property real ny: spotlight.ny
        property real strength: surface.lights && spotlight.hasPointer ? 1 : 0

        Behavior on nx  {
            LKNumberMotion {
            }
        }
        Behavior on ny  {
            LKNumberMotion {
            }
        }
        Behavior on strength  {
            LKNumberMotion {
            }
        }
    }

    // A renderer without shaders shows the light along the border alone.
    readonly property bool hasShaders: GraphicsInfo.api !== GraphicsInfo.Software

    ShaderEffect {
        readonly property real blur: 16
        readonly property color light: surface.lightColor
        readonly property size rectangle: Qt.size(surface.width * 1.015, surface.height * 1.015)
        readonly property size area: Qt.size(width, height)
        readonly property real strength: 0.22 * surface.strength

        anchors.fill: parent
        anchors.margins: -3 * blur
        visible: surface.hasShaders && surface.strength > 0
        fragmentShader: "qrc:/qt/qml/Larkspan/Design/shaders/glow.frag.qsb"
    }

    LKSurface {
        anchors.fill: parent
        visible: !lit.visible
        radius: surface.cornerRadius
        color: LK.palette.surfaceCard
        stroke: LK.palette.borderSubtle
    }

    LKRectangle {
        anchors.fill: parent
        visible: !surface.hasShaders && surface.strength > 0
        radius: surface.cornerRadius
        color: "transparent"
        border.width: 1.6
        border.color: Qt.alpha(surface.lightColor, 0.7 * surface.strength)
    }

    ShaderEffect {
        id: lit

        readonly property bool isDark: LK.theme === LK.Theme.Dark
        readonly property color fill: LK.palette.surfaceCard
        readonly property color border: LK.palette.borderSubtle
        readonly property color light: surface.lightColor
        readonly property size card: Qt.size(surface.width, surface.height)
        readonly property point centre: Qt.point(motion.nx, motion.ny)
        readonly property real reach: spotlight.radius
        readonly property real cornerRadius: surface.cornerRadius
        readonly property real spot: (isDark ? 0.24 : 0.15) * surface.strength
        readonly property real lit: 0.7 * surface.strength
        readonly property real adds: isDark ? 1 : 0

        anchors.fill: parent
        visible: surface.hasShaders && surface.strength > 0
        fragmentShader: "qrc:/qt/qml/Larkspan/Design/shaders/spotlight.frag.qsb"
    }

    Item {
        id: holder

        anchors.fill: parent
    }
}
