import QtQuick
import Larkspan.Design

// The title sequence: a film strip is cut by a glowing blade, and the program's icon springs into the gap. It always
// plays in full, once, from the first picture that the window has on the screen.
Item {
    id: intro

    // False for a view that shows a moment of the sequence and doesn't play.
    property bool plays: true
    property alias seconds: sequence.seconds

    // Emitted when the chime is due; the owner plays it.
    signal chimeDue
    signal finished

    opacity: sequence.look.opacity

    IntroSequence {
        id: sequence

        onChimeDue: intro.chimeDue()
        onFinished: intro.finished()
    }

    Connections {
        target: intro.Window.window
        enabled: intro.plays && !sequence.hasStarted
        function onFrameSwapped() {
            sequence.start();
        }
    }

    // A hidden window draws no frame, and a slow machine takes a while to draw the first one.
    Timer {
        interval: 3000
        running: intro.plays && !sequence.hasStarted
        onTriggered: sequence.start()
    }

    Rectangle {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    Row {
        objectName: "strip"
        anchors.centerIn: parent
        opacity: sequence.look.stripOpacity
        scale: sequence.look.stripScale

        IntroHalf {
            objectName: "leftHalf"
            baseOffset: 0
            scrub: sequence.look.scrub
            rotation: -sequence.look.halfAngle
            transform: Translate {
                x: -sequence.look.halfShift
            }
        }

        IntroHalf {
            objectName: "rightHalf"
            baseOffset: -width
            scrub: sequence.look.scrub
            rotation: sequence.look.halfAngle
            transform: Translate {
                x: sequence.look.halfShift
            }
        }
    }

    Item {
        objectName: "blade"
        anchors.horizontalCenter: parent.horizontalCenter
        y: (parent.height - height) / 2 + sequence.look.bladeY
        width: 2
        height: 150
        opacity: sequence.look.bladeOpacity
        visible: opacity > 0

        LKDropShadow {
            anchors.fill: parent
            shadow.color: LK.palette.accent
            shadow.radius: 9
            cornerRadius: 1
        }

        LKRectangle {
            anchors.fill: parent
            radius: 1
            color: LK.palette.accent
        }
    }

    Item {
        objectName: "icon"
        anchors.centerIn: parent
        anchors.alignWhenCentered: false // Qt 6.8 would round its place to a whole point
        width: 118 * 1.9 // with the shadow
        height: width
        opacity: sequence.look.iconOpacity
        scale: sequence.look.iconScale
        visible: opacity > 0
        layer.enabled: opacity < 1 // it fades as one

        AppIconMark {
            anchors.centerIn: parent
            size: 118
        }
    }
}
