import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKButton"
    note: "Four kinds, three sizes. Pressed wins over hover; disabled dims and keeps its colours."

    Repeater {
        model: [LKButton.Sm, LKButton.Md, LKButton.Lg]

        Row {
            id: row

            required property int modelData

            spacing: 24

            GallerySample {
                caption: "accent"
                interactive: row.modelData === LKButton.Md

                LKButton {
                    title: "Export event"
                    kind: LKButton.Accent
                    size: row.modelData
                }
            }

            GallerySample {
                caption: "standard"
                interactive: row.modelData === LKButton.Md

                LKButton {
                    title: "Sort again"
                    size: row.modelData
                }
            }

            GallerySample {
                caption: "ghost"
                interactive: row.modelData === LKButton.Md

                LKButton {
                    title: "Cancel"
                    kind: LKButton.Ghost
                    size: row.modelData
                }
            }

            GallerySample {
                caption: "danger"
                interactive: row.modelData === LKButton.Md

                LKButton {
                    title: "Move to bin"
                    kind: LKButton.Danger
                    size: row.modelData
                }
            }

            GallerySample {
                caption: "disabled"

                LKButton {
                    title: "Export event"
                    kind: LKButton.Accent
                    size: row.modelData
                    enabled: false
                }
            }
        }
    }

    GallerySample {
        caption: "full width"

        Item {
            width: 320
            height: 30

            LKButton {
                title: "Choose a folder"
                kind: LKButton.Accent
                size: LKButton.Lg
                fullWidth: true
            }
        }
    }

    Row {
        spacing: 24

        GallerySample {
            caption: "a title too long"

            LKButton {
                width: 160
                title: "Copy every clip of this shoot into a folder of its bin"
            }
        }

        GallerySample {
            caption: "no title"

            LKButton {
            }
        }

        GallerySample {
            caption: "combining characters"

            LKButton {
                title: "Cafe\u0301 · A\u0308rger"
            }
        }
    }
}
