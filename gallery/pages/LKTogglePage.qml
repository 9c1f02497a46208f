import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKToggle"
    note: "The one switch: accent when it is on."

    Row {
        spacing: 32

        GallerySample {
            caption: "off"
            interactive: true

            LKToggle {
                label: "Sound"
            }
        }

        GallerySample {
            caption: "on"
            interactive: true

            LKToggle {
                label: "Sound"
                isOn: true
            }
        }

        GallerySample {
            caption: "disabled"

            LKToggle {
                label: "Sound"
                isOn: true
                enabled: false
            }
        }
    }
}
