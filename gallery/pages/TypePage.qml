pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Type"
    note: "One face; half points are deliberate."

    Column {
        spacing: 6

        Repeater {
            model: [9, 9.5, 10, 10.5, 11, 11.5, 12, 12.5, 13, 14, 15, 16, 17, 21]

            Row {
                id: row

                required property real modelData

                spacing: 20

                LKText {
                    width: 40
                    text: row.modelData
                    font: LK.font(11)
                    color: LK.palette.textTertiary
                }

                Repeater {
                    model: [Font.Normal, Font.Medium, Font.DemiBold]

                    LKText {
                        id: sample

                        required property int modelData

                        width: 210
                        text: "Kitchen 2 of 19"
                        font: LK.font(row.modelData, sample.modelData)
                    }
                }
            }
        }
    }
}
