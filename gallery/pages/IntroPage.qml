import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Intro"
    note: "Moments of the title sequence, which plays in full in boring mode too."

    LKButton {
        title: "Play"
        onActivated: {
            moving.active = false;
            moving.active = true;
        }
    }

    Grid {
        columns: 2
        spacing: 12

        Repeater {
            model: [0.3, 1.85, 2.1, 3.5]

            GallerySample {
                id: sample

                required property double modelData

                caption: modelData + " s"

                IntroView {
                    width: 330
                    height: 190
                    clip: true
                    plays: false
                    seconds: sample.modelData
                }
            }
        }
    }

    Loader {
        id: moving

        width: 680
        height: active ? 420 : 0
        active: false

        sourceComponent: IntroView {
            clip: true
            onFinished: moving.active = false // qmllint disable
        }
    }
}
