import QtQuick
import Larkspan.Design

// Moves a colour on the house curve when a state changes it. A change of theme reaches it at once.
Behavior {
    id: behavior

    property int duration: LK.motion.hover

    enabled: !LK.isChangingTheme

    LKColorMotion {
        duration: behavior.duration
    }
}
