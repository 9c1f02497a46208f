import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKDropdown"
    note: "A choice of one among a few, shown as its label."

    Row {
        spacing: 24

        GallerySample {
            caption: "with options"
            interactive: true

            LKDropdown {
                label: "Bin"
                model: ["Kitchen", "Bathroom", "Pool"]
            }
        }

        GallerySample {
            caption: "no options"

            LKDropdown {
                label: "Bin"
                model: []
            }
        }
    }
}
