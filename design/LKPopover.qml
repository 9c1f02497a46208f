import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A panel that belongs to its parent and opens beside it, below where there is room and above where there is more.
// Takes keyboard focus at once. Escape or a press elsewhere closes it; a press on the parent is left to the parent.
T.Popup {
    id: popover

    readonly property real gap: 6
    readonly property bool opensBelow: {
        if (!visible || !parent || !parent.Window.window)
            return true;
        const top = parent.mapToItem(null, 0, 0).y;
        const roomBelow = parent.Window.height - top - parent.height;
        return roomBelow >= implicitHeight + gap + margins || roomBelow >= top;
    }

    x: parent ? (parent.width - width) / 2 : 0
    y: opensBelow ? (parent ? parent.height : 0) + gap : -height - gap
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: 8
    padding: 12
    focus: true
    transformOrigin: opensBelow ? T.Popup.Top : T.Popup.Bottom
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    // T.Popup takes focus only at the end of its enter transition, and then doesn't know which item to return it to.
    property Item keyboardBefore: null

    onAboutToShow: {
        z = LK.layerOf(parent);
        keyboardBefore = parent ? parent.Window.activeFocusItem : null;
    }
    onVisibleChanged: {
        if (visible)
            forceActiveFocus(Qt.PopupFocusReason);
    }
    onAboutToHide: {
        // Focus goes back unless another item has taken it meanwhile.
        const now = parent ? parent.Window.activeFocusItem : null;
        if (keyboardBefore && (!now || now === parent.Window.contentItem))
            keyboardBefore.forceActiveFocus(Qt.PopupFocusReason);
        keyboardBefore = null;
    }

    enter: Transition {
        LKNumberMotion {
            property: "opacity"
            from: 0
            to: 1
            duration: LK.motion.overlay
        }
        LKNumberMotion {
            property: "scale"
            from: 0.96
            to: 1
            duration: LK.motion.overlay
        }
    }

    exit: Transition {
        LKNumberMotion {
            property: "opacity"
            to: 0
        }
    }

    background: LKPanel {
        cornerRadius: 10
    }
}
