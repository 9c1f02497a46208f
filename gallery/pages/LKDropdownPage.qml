pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    id: page

    title: "LKDropdown"
    note: "A choice of one among many, shown as its label. Arrows and typed letters choose while it is closed."

    readonly property var bins: [{
            "value": "kitchen",
            "label": "Kitchen"
        }, {
            "value": "living",
            "label": "Living Room"
        }, {
            "value": "pool",
            "label": "Pool"
        }]

    Repeater {
        model: [[LKDropdown.Standard, "standard"], [LKDropdown.Caution, "caution"], [LKDropdown.Attention, "attention"], [LKDropdown.Ai, "of the cloud model"]]

        Row {
            id: row

            required property var modelData

            spacing: 24

            Repeater {
                model: [LKButton.Sm, LKButton.Md, LKButton.Lg]

                GallerySample {
                    id: sample

                    required property int modelData

                    caption: row.modelData[1]
                    interactive: modelData === LKButton.Md

                    LKDropdown {
                        width: 150
                        label: "Bin"
                        options: page.bins
                        selection: "living"
                        disabledValues: ["pool"]
                        tone: row.modelData[0]
                        size: sample.modelData
                        onActivated: index => selection = page.bins[index].value
                    }
                }
            }
        }
    }

    Row {
        spacing: 24

        GallerySample {
            caption: "a selection outside the options"

            LKDropdown {
                width: 150
                label: "Bin"
                options: page.bins
                selection: "garage"
            }
        }

        GallerySample {
            caption: "no options"

            LKDropdown {
                width: 150
                label: "Bin"
            }
        }

        GallerySample {
            caption: "disabled"

            LKDropdown {
                width: 150
                label: "Bin"
                options: page.bins
                selection: "kitchen"
                enabled: false
            }
        }
    }
}
