import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKAIGlowModifier"
    note: "Behind what the cloud model touches: rises and falls every 5.2 seconds; still and faint in boring mode."

    Row {
        spacing: 48

        GallerySample {
            caption: "active"

            LKAIGlowModifier {
                active: true

                LKButton {
                    kind: LKButton.Accent
                    title: "Sort with the cloud model"
                }
            }
        }

        GallerySample {
            caption: "not active"

            LKAIGlowModifier {
                LKButton {
                    kind: LKButton.Accent
                    title: "Sort with the cloud model"
                }
            }
        }
    }

    GallerySample {
        caption: "around a card"

        LKAIGlowModifier {
            active: true
            cornerRadius: 10

            LKSpotlightCard {
                width: 320
                height: 160
            }
        }
    }
}
