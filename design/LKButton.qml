import QtQuick
import Larkspan.Design

// The one push button of the house.
LKPressable {
    id: control

    enum Kind {
        Accent,
        Standard,
        Ghost,
        Danger
    }
    enum Size {
        Sm,
        Md,
        Lg
    }

    property string title
    property int kind: LKButton.Standard
    property int size: LKButton.Md
    property bool fullWidth: false

    readonly property color restFill: {
        switch (kind) {
        case LKButton.Accent:
            return LK.palette.accentSolid;
        case LKButton.Standard:
            return Qt.alpha(LK.palette.surfaceCard, 0.001);
        default:
            return "transparent";
        }
    }
    readonly property color hoverFill: {
        switch (kind) {
        case LKButton.Accent:
            return LK.palette.accentSolidHover;
        case LKButton.Danger:
            return Qt.alpha(LK.palette.dangerSubtle, LK.palette.dangerSubtle.a * 0.7);
        default:
            return LK.palette.surfaceHover;
        }
    }
    readonly property color pressedFill: {
        switch (kind) {
        case LKButton.Accent:
            return LK.palette.accentSolidPressed;
        case LKButton.Danger:
            return LK.palette.dangerSubtle;
        default:
            return LK.palette.surfacePressed;
        }
    }
    readonly property color textColor: {
        switch (kind) {
        case LKButton.Accent:
            return LK.palette.textOnAccent;
        case LKButton.Ghost:
            return LK.palette.textSecondary;
        case LKButton.Danger:
            return LK.palette.danger;
        default:
            return LK.palette.textPrimary;
        }
    }
    readonly property color borderColor: {
        switch (kind) {
        case LKButton.Standard:
            return LK.palette.borderStrong;
        case LKButton.Danger:
            return LK.palette.borderSubtle;
        default:
            return "transparent";
        }
    }

    implicitWidth: fullWidth && parent ? parent.width : implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 22 + 4 * size
    horizontalPadding: 10 + 3 * size
    words: title
    font: LK.font([11.5, 12.5, 13][size], kind === LKButton.Accent ? Font.DemiBold : Font.Medium)
    layer.enabled: !enabled // else the fill would show through the label

    contentItem: LKText {
        text: control.title
        font: control.font
        color: control.textColor
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: LKSurface {
        radius: 5
        color: control.down ? control.pressedFill : control.hovered ? control.hoverFill : control.restFill
        border.width: control.borderColor.a > 0 ? 1 : 0
        stroke: control.borderColor

        LKColorBehavior on color  {
            duration: control.fillMotion
        }
    }
}
