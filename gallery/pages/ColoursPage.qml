import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Colours"
    note: "The palette of the theme that is on, each colour over the window's."

    Flow {
        width: parent.width
        spacing: 14

        Repeater {
            model: ["accent", "accentHover", "accentPressed", "accentSubtle", "accentForeground", "accentSolid", "accentSolidHover", "accentSolidPressed", "danger", "dangerHover", "dangerSubtle", "warning", "warningSubtle", "info", "infoSubtle", "surfaceWindow", "surfaceSidebar", "surfaceCard", "surfaceElevated", "surfaceHover", "surfacePressed", "surfaceSelected", "borderSubtle", "borderStrong", "textPrimary", "textSecondary", "textTertiary", "textOnAccent", "textDisabled"]

            GallerySample {
                id: sample

                required property string modelData

                caption: modelData

                LKRectangle {
                    width: 120
                    height: 44
                    radius: 5
                    color: LK.palette[sample.modelData]
                    border.width: 1
                    border.color: LK.palette.borderSubtle
                }
            }
        }
    }
}
