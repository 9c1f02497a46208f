import QtQuick

// A layer's effect: rounds the corners of what it shows, the upper and the lower ones each by so many points. Takes
// graphics that draw shaders.
ShaderEffect {
    property var source
    property real upper: 0
    property real lower: 0
    readonly property size area: Qt.size(width, height)

    fragmentShader: "qrc:/qt/qml/Larkspan/Design/shaders/rounded.frag.qsb"
}
