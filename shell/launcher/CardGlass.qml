import QtQuick

// A layer's effect: blurs a card of the launcher, and fades it towards the launcher's sides. One pass, and no texture
// but the card's own, so that the launcher needs none of the window's size.
ShaderEffect {
    property var source
    required property real deviation // of the blur, in points
    // Where the card's left and right side are drawn, from 0, the launcher's left side, to 1, its right one.
    required property vector2d sides
    required property real fade // share of the launcher's width in which each side fades
    readonly property vector2d spread: Qt.vector2d(deviation / width, deviation / height)

    fragmentShader: "qrc:/qt/qml/Larkspan/Shell/cardglass.frag.qsb"
}
