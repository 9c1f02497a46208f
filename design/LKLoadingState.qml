pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// Shows that the program is at work: a pulsing mark, messages in turn, and the time since it began.
Item {
    id: waiting

    property list<string> messages
    property bool round: false // the cells of the mark

    property int messageIndex: 0
    readonly property string message: messageIndex < messages.length ? messages[messageIndex] : ""
    // The gleam's way across the text, 0 to 1.
    property real phase

    readonly property bool still: LK.reducedMotion || LK.boringMode
    readonly property bool animating: !still && LKShown.now
    readonly property string elapsed: clock.text

    implicitWidth: 250
    implicitHeight: Math.max(mark.height, texts.height)

    Accessible.role: Accessible.StaticText
    Accessible.name: message

    onMessagesChanged: {
        if (messageIndex >= messages.length)
            messageIndex = 0;
    }
    onMessageChanged: {
        turn.stop();
        leaving.text = arriving.text;
        arriving.text = message;
        if (animating)
            turn.start();
        else
            arriving.opacity = 1;
    }

    LKLoadingMark {
        id: mark

        anchors.verticalCenter: parent.verticalCenter
        round: waiting.round
        still: waiting.still
    }

    Column {
        id: texts

        anchors.left: mark.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Item {
            width: 220
            height: arriving.height

            LKText {
                id: leaving

                width: parent.width
                hasHelp: false
                font: arriving.font
                color: LK.palette.textSecondary
                opacity: 1 - arriving.opacity
                visible: opacity > 0
            }

            LKText {
                id: arriving

                width: parent.width
                font: LK.font(13, Font.Medium)
                color: LK.palette.textSecondary

                // The glyphs again, seen only where the gleam is.
                LKText {
                    width: Math.min(Math.max(1, implicitWidth), parent.width)
                    hasHelp: false
                    text: arriving.text
                    font: arriving.font
                    visible: waiting.animating && text !== "" && GraphicsInfo.api !== GraphicsInfo.Software
                    layer.enabled: visible
                    layer.effect: ShaderEffect {
                        readonly property real offset: waiting.phase * 1.6 - 0.3

                        fragmentShader: "qrc:/qt/qml/Larkspan/Design/shaders/shimmer.frag.qsb"
                    }
                }
            }
        }

        LKDigits {
            text: clock.text
            font: LK.font(11.5)
            color: LK.palette.textTertiary
        }
    }

    LKElapsed {
        id: clock

        running: waiting.LKShown.now
    }

    Timer {
        interval: LK.motion.messageStay
        repeat: true
        running: waiting.messages.length > 1 && waiting.LKShown.now
        onTriggered: waiting.messageIndex = (waiting.messageIndex + 1) % waiting.messages.length
    }

    NumberAnimation {
        id: turn

        target: arriving
        property: "opacity"
        from: 0
        to: 1
        duration: LK.motion.message
        easing.type: Easing.BezierSpline
        easing.bezierCurve: LK.motion.easeInOut
    }

    NumberAnimation on phase  {
        from: 0
        to: 1
        loops: Animation.Infinite
        duration: LK.motion.shimmer
        running: waiting.animating
    }
}
