import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKSpotlightCard"
    note: "Its light follows the pointer, and turns from accent to info on its way across. In boring mode, or when it isn't active, the card stays plain."

    Row {
        spacing: 32

        GallerySample {
            caption: "active"
            interactive: true

            LKSpotlightCard {
                width: 280
                height: 180

                LKEmptyState {
                    anchors.centerIn: parent
                    width: 240
                    title: "Binnacle"
                    description: "Sorts the clips of a shoot by room."
                    actionTitle: "Open"
                }
            }
        }

        GallerySample {
            caption: "not active"
            interactive: true

            LKSpotlightCard {
                width: 180
                height: 180
                active: false
            }
        }
    }

    GallerySample {
        caption: "radius 14"
        interactive: true

        LKSpotlightCard {
            width: 492
            height: 90
            cornerRadius: 14
        }
    }
}
