import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// Shows the popups below an overlay, other overlays among them, as through frosted glass.
Item {
    id: frost

    // The place of the topmost overlay in the stack; 0 without one.
    required property real level
    // The blur of the glass, in points.
    required property real haze

    readonly property Item popups: T.Overlay.overlay
    // Popups below this place are blurred. It keeps its value until the blur has faded after the overlay.
    property real reach: 0
    property real deviation: 0

    readonly property Component glass: LKBlur {
        deviation: frost.deviation // qmllint disable
    }

    // The overlay's other children are the effects made here.
    function shownPopups(): var {
        const shown = [];
        for (let i = 0; i < popups.visibleChildren.length; ++i) {
            if (popups.visibleChildren[i] instanceof T.Page)
                shown.push(popups.visibleChildren[i]);
        }
        return shown;
    }

    function follow() {
        const covers = shownPopups().some(popup => popup.z < level);
        if (covers || deviation === 0)
            reach = level;
        deviation = covers ? haze : 0;
        frostBelow();
    }

    function frostBelow() {
        if (GraphicsInfo.api === GraphicsInfo.Software)
            return;
        for (const popup of shownPopups()) {
            popup.layer.effect = glass;
            popup.layer.enabled = popup.z < reach;
        }
    }

    onLevelChanged: follow()
    onDeviationChanged: {
        if (deviation === 0) {
            reach = level;
            frostBelow();
        }
    }

    Connections {
        target: frost.popups
        function onVisibleChildrenChanged() {
            frost.follow();
        }
    }

    Behavior on deviation  {
        LKNumberMotion {
            duration: LK.motion.overlay
        }
    }
}
