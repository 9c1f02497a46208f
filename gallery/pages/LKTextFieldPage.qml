import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKTextField"
    note: "One line of text to write."

    Row {
        spacing: 24

        GallerySample {
            caption: "empty"
            interactive: true

            LKTextField {
                width: 200
                label: "Name"
                placeholderText: "Name of the project"
            }
        }

        GallerySample {
            caption: "with text"

            LKTextField {
                width: 200
                label: "Name"
                text: "Twelve Maple Street"
            }
        }

        GallerySample {
            caption: "disabled"

            LKTextField {
                width: 200
                label: "Name"
                text: "Twelve Maple Street"
                enabled: false
            }
        }
    }
}
