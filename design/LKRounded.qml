import QtQuick

// Rounds the corners of an item, as its layer.effect: the upper and the lower ones each by a number of points. Needs
// graphics that draw shaders.
ShaderEffect {
    property var source
    property real upper: 0
    property real lower: 0
    readonly property size area: Qt.size(width, height)

    fragmentShader: "qrc:/qt/qml/Larkspan/Design/shaders/rounded.frag.qsb"
}
