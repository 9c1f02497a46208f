import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A menu above the rest: of LKMenuItem, LKMenuSeparator and LKMenu, which is a submenu by its title.
// Arrows, Home, End and typed letters walk it, past what can't be chosen; it scrolls where the window is too low.
T.Menu {
    id: menu

    readonly property LKChoiceKeys keys: LKChoiceKeys {
        wraps: true
        onWalked: row => menu.currentIndex = row
    }

    // The item that had keyboard focus, and gets it back when the menu closes.
    property Item keyboardBefore: null

    // The greatest width of a row, in points. A longer text is elided.
    readonly property real widest: 360

    function labelAt(row: int): var {
        const item = itemAt(row);
        return item instanceof T.MenuItem && item.enabled && item.visible ? item.text : null;
    }

    function takeKey(event: var) {
        const labels = [];
        for (let row = 0; row < count; ++row)
            labels.push(labelAt(row));
        keys.labels = labels;
        event.accepted = keys.take(event.key, event.modifiers, event.text, currentIndex, true);
    }

    LKAccessible.name: title
    onAboutToShow: {
        let width = 140;
        for (let row = 0; row < count; ++row) {
            const control = itemAt(row) as T.Control;
            control.contentItem.ensurePolished(); // a text that changed while the menu was closed
            width = Math.max(width, control.implicitWidth);
        }
        contentWidth = Math.min(width, widest);
        z = LK.layerOf(parent);
        keyboardBefore = parent ? parent.Window.activeFocusItem : null;
    }
    onAboutToHide: {
        // Closing a submenu returns focus to the menu that it opened from.
        const opener = parent as T.MenuItem;
        if (opener && opener.menu && opener.menu.visible) {
            opener.forceActiveFocus(Qt.PopupFocusReason);
            return;
        }
        // Focus goes back unless another item has taken it meanwhile.
        const now = parent ? parent.Window.activeFocusItem : null;
        if (keyboardBefore && (!now || now === parent.Window.contentItem))
            keyboardBefore.forceActiveFocus(Qt.PopupFocusReason);
        keyboardBefore = null;
    }

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Math.min(contentHeight + topPadding + bottomPadding, T.Overlay.overlay ? T.Overlay.overlay.height - 2 * margins : Infinity)
    margins: 6
    padding: 4
    cascade: true
    overlap: 2

    delegate: LKMenuItem {
    }

    enter: Transition {
        LKNumberMotion {
            property: "opacity"
            from: 0
            to: 1
        }
    }

    exit: Transition {
        LKNumberMotion {
            property: "opacity"
            to: 0
        }
    }

    contentItem: ListView {
        focus: true
        implicitHeight: contentHeight
        model: menu.contentModel
        currentIndex: menu.currentIndex
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        Keys.onPressed: event => menu.takeKey(event)

        T.ScrollBar.vertical: LKScrollBar {
        }
    }

    background: LKPanel {
    }
}
