import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKText, LKDigits"
    note: "A text that has no room ends in dots, and a tool tip shows all of it. Digits are all as wide, so that a number that runs stays in its place."

    Row {
        spacing: 32

        GallerySample {
            caption: "one line"

            LKText {
                text: "Living Room"
                font: LK.font(12.5)
            }
        }

        GallerySample {
            caption: "no room"

            LKText {
                width: 120
                text: "Exterior Front with the drive"
                font: LK.font(12.5)
            }
        }

        GallerySample {
            caption: "three lines"

            LKText {
                width: 160
                text: "Sorts a shoot into room and shot-type bins, then builds the event, and says so when it is done."
                font: LK.font(11)
                color: LK.palette.textSecondary
                wrapMode: Text.Wrap
                maximumLineCount: 3
            }
        }
    }

    Row {
        spacing: 32

        GallerySample {
            caption: "digits"

            LKDigits {
                text: "111 of 808"
            }
        }

        GallerySample {
            caption: "on a fill"

            LKDigits {
                text: "34"
                padding: 4
                font: LK.font(10, Font.DemiBold)
                color: LK.palette.warning
                fill: LK.palette.warningSubtle
            }
        }
    }
}
