pragma ComponentBehavior: Bound
import QtQml.Models
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A line of help for its parent, shown after a moment. Costs nothing until it is wanted.
Item {
    id: help

    property string text
    property bool wanted: false
    // Shows the help above the item instead of below it.
    property bool above: false
    readonly property alias told: tips.active

    anchors.fill: parent

    onWantedChanged: tips.active = false

    Timer {
        interval: LK.motion.toolTipDelay
        running: help.wanted && help.text !== ""
        onTriggered: tips.active = true
    }

    // Not a Loader: that can't load a bound component.
    Instantiator {
        id: tips

        active: false

        delegate: T.ToolTip {
            id: tip

            readonly property real widest: 320

            parent: help
            visible: true
            z: LK.layerOf(help)
            text: help.text
            x: (help.width - width) / 2
            y: help.above ? -height - 6 : help.height + 6
            margins: 6
            horizontalPadding: 8
            verticalPadding: 5
            contentWidth: Math.min(implicitContentWidth, widest)
            implicitWidth: contentWidth + leftPadding + rightPadding
            implicitHeight: implicitContentHeight + topPadding + bottomPadding
            closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

            // Not LKText, which has a tool tip itself.
            contentItem: Text {
                text: tip.text
                font: LK.font(11)
                color: LK.palette.textPrimary
                wrapMode: Text.Wrap
                maximumLineCount: 12
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }

            background: LKPanel {
                cornerRadius: 5
            }
        }
    }
}
