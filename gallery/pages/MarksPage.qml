import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Marks"
    note: "The program's icon, the empty frame above a screen's message, and the cells of the waiting mark."

    Row {
        spacing: 40

        GallerySample {
            caption: "AppIconMark"

            AppIconMark {
                size: 118
            }
        }

        GallerySample {
            caption: "LKFrameMark"

            LKFrameMark {
            }
        }

        GallerySample {
            caption: "its error"

            LKFrameMark {
                border.color: LK.palette.danger
            }
        }

        GallerySample {
            caption: "LKLoadingMark"

            LKLoadingMark {
                still: LK.boringMode || LK.reducedMotion
            }
        }

        GallerySample {
            caption: "round"

            LKLoadingMark {
                round: true
                still: LK.boringMode || LK.reducedMotion
            }
        }
    }
}
