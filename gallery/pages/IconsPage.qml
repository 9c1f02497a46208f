pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Icons"
    note: "Every symbol of the house, and the button that one makes."

    Flow {
        width: parent.width
        spacing: 16

        Repeater {
            model: Gallery.symbols

            GallerySample {
                id: sample

                required property string modelData

                width: 124
                caption: modelData

                Row {
                    spacing: 12

                    LKIcon {
                        name: sample.modelData
                        size: 16
                        color: LK.palette.textPrimary
                    }
                    LKIcon {
                        name: sample.modelData
                        size: 32
                        color: LK.palette.textPrimary
                    }
                }
            }
        }
    }

    Row {
        spacing: 24

        GallerySample {
            caption: "IconButton"
            interactive: true

            IconButton {
                name: "gearshape.fill"
                help: "Preferences"
            }
        }

        GallerySample {
            caption: "another tint on hover"
            interactive: true

            IconButton {
                name: "trash"
                help: "Move to bin"
                hoverTint: LK.palette.danger
            }
        }

        GallerySample {
            caption: "disabled"

            IconButton {
                name: "pencil"
                help: "Rename"
                enabled: false
            }
        }
    }
}
