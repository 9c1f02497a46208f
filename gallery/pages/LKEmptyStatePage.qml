import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKEmptyState"
    note: "What a screen says when it has nothing to show, or nothing good."

    GallerySample {
        caption: "neutral, with an action and a footnote"

        LKEmptyState {
            title: "No clips here"
            description: "Drop a folder of footage, or choose one, and its clips are sorted by room."
            actionTitle: "Choose a folder"
            footnote: "The footage stays where it is."
        }
    }

    GallerySample {
        caption: "error"

        LKEmptyState {
            tone: LKEmptyState.Error
            title: "The folder can't be read"
            description: "It may lie on a disk that was taken off."
        }
    }
}
