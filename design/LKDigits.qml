pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Larkspan.Design

// A text that counts: its digits are all as wide, so that it keeps its place while it runs.
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

    // In a face of our kind none is wider than this one. Bare texts: none is ever cut, or read by itself.
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

                width: run >= "0" && run <= "9" ? widest.implicitWidth : implicitWidth
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
