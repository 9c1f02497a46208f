import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Backdrops"
    note: "The grid bends to the pointer and ripples at a click; the starlight blooms when the page is opened. Both stand still in boring mode."

    GallerySample {
        caption: "LKKineticGrid"

        LKKineticGrid {
            width: 680
            height: 240
            clip: true
        }
    }

    GallerySample {
        caption: "LKStarlightBackground"

        LKStarlightBackground {
            width: 680
            height: 240
            clip: true
        }
    }
}
