import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKSidebarRow"
    note: "A row of a side list: what it leads to, and how much is there."

    Row {
        spacing: 24

        Column {
            spacing: 16

            GallerySample {
                caption: "plain"
                interactive: true

                LKSidebarRow {
                    label: "Kitchen"
                    count: 12
                }
            }

            GallerySample {
                caption: "selected"
                interactive: true

                LKSidebarRow {
                    label: "Living Room"
                    count: 7
                    selected: true
                }
            }

            GallerySample {
                caption: "warning"
                interactive: true

                LKSidebarRow {
                    label: "Needs a look"
                    count: 34
                    tone: LKSidebarRow.Warning
                }
            }
        }

        Column {
            spacing: 16

            GallerySample {
                caption: "no count"

                LKSidebarRow {
                    label: "Garage"
                }
            }

            GallerySample {
                caption: "count not shown"

                LKSidebarRow {
                    label: "Pool"
                    count: 3
                    showsCount: false
                }
            }

            GallerySample {
                caption: "a label too long"

                LKSidebarRow {
                    label: "Exterior Front with the drive and both of the garages"
                    count: 1204
                }
            }
        }
    }
}
