import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKToolTip"
    note: "Comes a moment after the pointer rests on its item, or with the keyboard's focus. Here it stays."

    component Told: LKRectangle {
        property alias text: tip.text
        property alias above: tip.above

        width: 120
        height: 26
        radius: 5
        color: LK.palette.surfacePressed

        LKToolTip {
            id: tip

            wanted: true
        }
    }

    Row {
        spacing: 60
        topPadding: 40

        GallerySample {
            Told {
                text: "Below its item"
            }
        }

        GallerySample {
            Told {
                text: "Above it"
                above: true
            }
        }

        GallerySample {
            Told {
                text: "A text that is too long for one line is wrapped, and keeps to the window"
            }
        }
    }
}
