import QtQuick

// A layer's effect: fades what it shows towards its left and right side.
ShaderEffect {
    property var source
    property real fade: 0.12

    fragmentShader: "qrc:/qt/qml/Larkspan/Shell/edgefade.frag.qsb"
}
