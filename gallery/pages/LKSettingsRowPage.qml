import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKSettingsRow"
    note: "A setting: what it is, and what sets it. All but the last have a line below."

    GallerySample {
        caption: "three rows"

        Column {
            width: 460

            LKSettingsRow {
                width: parent.width
                label: "Sound"
                sublabel: "A tick while clips are sorted, and a chord at the end."

                LKToggle {
                    label: "Sound"
                    isOn: true
                }
            }

            LKSettingsRow {
                width: parent.width
                label: "Show the intro"

                LKToggle {
                    label: "Show the intro"
                }
            }

            LKSettingsRow {
                width: parent.width
                label: "A label that is much longer than the room beside what sets it leaves to it"
                sublabel: "And what is to be known about it, which is longer still and goes on for more than one line."
                isLast: true

                LKButton {
                    title: "Choose"
                }
            }
        }
    }
}
