pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A text with figures that change, such as a clock. All digits have the same width, so that the text stays in place.
T.Control {
    id: digits

    property string text
    property color color: LK.palette.textTertiary
    // The colour of the tag behind the text, if any.
    property color fill: "transparent"

    readonly property var runs: text.match(/\d|\D+/g) ?? []

    // Numbers run from left to right everywhere.
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    baselineOffset: topPadding + widest.baselineOffset
    font: LK.font(11)

    LKAccessible.role: Accessible.StaticText
    Accessible.name: text

    // Measures a digit: in the fonts that we use, 0 is as wide as any. The texts are bare ones, since none is elided or
    // read by itself.
    Text {
        id: widest

        visible: false
        text: "0"
        font: digits.font
    }

    contentItem: Row {
        Repeater {
            model: digits.runs.length

            Text {
                required property int index

                readonly property string run: digits.runs[index] ?? ""

                // Undefined for the text's own width. Reading implicitWidth here may change it, which would be a loop.
                width: run >= "0" && run <= "9" ? widest.implicitWidth : undefined
                text: run
                font: digits.font
                color: digits.color
                horizontalAlignment: Text.AlignHCenter
                textFormat: Text.PlainText

                Accessible.ignored: true // read as a whole
            }
        }
    }

    background: LKRectangle {
        radius: 4
        color: digits.fill
    }
}
