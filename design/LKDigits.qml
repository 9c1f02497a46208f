pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design

// A number, or a text about one, whose digits all take the same room, so that it doesn't tremble while it counts.
Row {
    id: digits

    property string text
    property font font: LK.font(11)
    property color color: LK.palette.textTertiary

    readonly property real digitWidth: {
        let widest = 0;
        for (let digit = 0; digit < 10; ++digit)
            widest = Math.max(widest, metrics.advanceWidth(String(digit)));
        return widest;
    }

    baselineOffset: metrics.ascent

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FontMetrics {
        id: metrics

        font: digits.font
    }

    Repeater {
        model: digits.text.length

        Text {
            required property int index
            readonly property string letter: digits.text.charAt(index)

            width: letter >= "0" && letter <= "9" ? digits.digitWidth : implicitWidth
            text: letter
            font: digits.font
            color: digits.color
            horizontalAlignment: Text.AlignHCenter
            textFormat: Text.PlainText

            Accessible.ignored: true // read as a whole
        }
    }
}
