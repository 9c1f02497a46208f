pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    id: page

    title: "LKSegmented"
    note: "A choice of one among two or three. What the cloud model does has its gradient for a border."

    readonly property var tiers: [{
            "value": "local",
            "label": "On this machine"
        }, {
            "value": "cloud",
            "label": "Cloud model"
        }]

    Repeater {
        model: [LKButton.Sm, LKButton.Md, LKButton.Lg]

        Row {
            id: row

            required property int modelData

            spacing: 24

            GallerySample {
                caption: "the first"
                interactive: row.modelData === LKButton.Md

                LKSegmented {
                    label: "Model"
                    options: page.tiers
                    aiValues: ["cloud"]
                    selection: "local"
                    size: row.modelData
                    onActivated: value => selection = value
                }
            }

            GallerySample {
                caption: "of the cloud model"
                interactive: row.modelData === LKButton.Md

                LKSegmented {
                    label: "Model"
                    options: page.tiers
                    aiValues: ["cloud"]
                    selection: "cloud"
                    size: row.modelData
                    onActivated: value => selection = value
                }
            }

            GallerySample {
                caption: "one disabled"

                LKSegmented {
                    label: "Model"
                    options: page.tiers
                    disabledValues: ["cloud"]
                    selection: "local"
                    size: row.modelData
                }
            }
        }
    }

    GallerySample {
        caption: "nothing selected"

        LKSegmented {
            label: "Model"
            options: page.tiers
            selection: "neither"
        }
    }
}
