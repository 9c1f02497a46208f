import QtQuick
import QtQuick.Templates as T
import Larkspan.Design
import Larkspan.Shell

// An overlay over the whole window, wherever it is declared: a scrim with a card in its middle. Nothing below it gets
// the pointer or keyboard focus, but the window can still be moved, resized and closed.
T.Popup {
    id: overlay

    required property OverlayStack stack
    required property int kind // an OverlayStack.Overlay
    required property bool shown
    property bool wanted: shown // asked for, even if it isn't to be shown yet
    required property real scrimOpacity
    // The item in the middle of the scrim.
    default property alias content: card.data

    // The scrim was pressed.
    signal scrimTapped
    // Escape has closed what this overlay shows.
    signal dismissed

    // The stack is gone before this when the window is destroyed.
    function tellStack() {
        if (stack)
            stack.put(kind, wanted, shown, visible);
    }

    onWantedChanged: tellStack()
    onShownChanged: tellStack()
    onVisibleChanged: tellStack()

    z: stack ? stack.placeOf(kind) : 0
    parent: T.Overlay.overlay
    x: 0
    y: 0
    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    padding: 0
    modal: true
    dim: false
    focus: true
    closePolicy: T.Popup.NoAutoClose
    visible: shown
    LKAccessible.role: Accessible.LayeredPane // the card is the dialog

    enter: Transition {
        LKNumberMotion {
            property: "opacity"
            from: 0
            to: 1
            duration: LK.motion.overlay
        }
    }
    exit: Transition {
        LKNumberMotion {
            property: "opacity"
            to: 0
            duration: LK.motion.overlay
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: overlay.scrimOpacity
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onClicked: overlay.scrimTapped()
        onWheel: wheel => wheel.accepted = true
    }

    WindowMoveArea {
        width: parent.width
        height: 44
        onTapped: overlay.scrimTapped()
    }

    // A press beside the controls of the card isn't one on the scrim.
    MouseArea {
        anchors.fill: card
        acceptedButtons: Qt.AllButtons
    }

    FocusScope {
        id: card

        anchors.centerIn: parent
        width: childrenRect.width
        height: childrenRect.height
        focus: true
    }

    WindowFrame {
        anchors.fill: parent
    }

    Shortcut {
        enabled: overlay.visible
        sequence: "Escape"
        autoRepeat: false
        onActivated: overlay.stack.closeTopmost()
    }

    Connections {
        target: overlay.stack
        function onDismissed(kind) {
            if (kind === overlay.kind)
                overlay.dismissed();
        }
    }
}
