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
                options: [{
                        "value": "k",
                        "label": "Kitchen"
                    }, {
                        "value": "b",
                        "label": "Bathroom"
                    }, {
                        "value": "p",
                        "label": "Pool"
                    }]
                selection: "k"
            }
        }

        GallerySample {
            caption: "no options"

            LKDropdown {
                label: "Bin"
            }
        }
    }
}
