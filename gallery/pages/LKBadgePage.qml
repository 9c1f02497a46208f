import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKBadge"
    note: "A word or two about the thing beside it."

    Row {
        spacing: 24

        GallerySample {
            caption: "accent"

            LKBadge {
                text: "New"
                tone: LKBadge.Accent
            }
        }

        GallerySample {
            caption: "warning"

            LKBadge {
                text: "Needs a look"
                tone: LKBadge.Warning
            }
        }

        GallerySample {
            caption: "neutral"

            LKBadge {
                text: "Coming soon"
            }
        }
    }
}
