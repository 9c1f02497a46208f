import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Sound"
    note: "The three cues, as the program plays them: the tick on a node of its own at half volume. Without a device they are silent."

    Row {
        spacing: 12

        LKButton {
            title: "Tick"
            onActivated: Gallery.playTick()
        }

        LKButton {
            title: "Results chord"
            onActivated: Gallery.playChord()
        }

        LKButton {
            title: "Intro chime"
            onActivated: Gallery.playChime()
        }
    }
}
