import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKLoadingState"
    note: "Still, but for the time, in boring mode and where the desktop asks for less motion."

    GallerySample {
        caption: "three messages"

        LKLoadingState {
            messages: ["Looking at the first frames", "Telling rooms apart", "Filing the clips"]
        }
    }

    GallerySample {
        caption: "round, one message"

        LKLoadingState {
            round: true
            messages: ["Copying the card"]
        }
    }

    GallerySample {
        caption: "no message"

        LKLoadingState {
        }
    }

    GallerySample {
        caption: "a message too long"

        LKLoadingState {
            messages: ["Reading the clips of Twelve Maple Street, second visit with the agent"]
        }
    }
}
