import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKProgressBar"
    note: "The bar fills by the share that is done, and no further."

    Repeater {
        model: [[0, 12], [3, 12], [12, 12], [20, 12], [5, 0], [-2, 12]]

        GallerySample {
            id: sample

            required property var modelData

            caption: "done " + modelData[0] + ", total " + modelData[1]

            LKProgressBar {
                label: "Sorting Maple Street"
                done: sample.modelData[0]
                total: sample.modelData[1]
            }
        }
    }

    GallerySample {
        caption: "a label too long"

        LKProgressBar {
            label: "Sorting 2026-05-04 Twelve Maple Street second visit with the agent"
            done: 120
            total: 1204
        }
    }
}
