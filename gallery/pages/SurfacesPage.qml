import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "Surfaces"
    note: "What controls and dialogs lie on, and what is laid around or over an item. The last two are drawn only where shaders can be."

    Row {
        spacing: 48

        GallerySample {
            caption: "LKSurface"

            LKSurface {
                width: 150
                height: 90
                radius: 5
                color: LK.palette.surfaceCard
                stroke: LK.palette.borderStrong
            }
        }

        GallerySample {
            caption: "LKPanel"

            LKPanel {
                width: 150
                height: 90
            }
        }

        GallerySample {
            caption: "LKModalPanel"

            LKModalPanel {
                width: 210
                height: 140
            }
        }
    }

    Row {
        spacing: 48

        GallerySample {
            caption: "LKFocusRing"

            Item {
                width: 150
                height: 32

                LKFocusRing {
                    anchors.margins: 3
                }
            }
        }

        GallerySample {
            caption: "LKScrollBar"

            Item {
                width: 150
                height: 90

                LKScrollBar {
                    height: parent.height
                    size: 0.4
                    position: 0.2
                }
            }
        }

        GallerySample {
            caption: "LKRounded"

            Rectangle {
                width: 100
                height: 60
                color: LK.palette.accentSolid
                layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
                layer.effect: LKRounded {
                    upper: 14
                }
            }
        }

        GallerySample {
            caption: "LKBlur"

            Rectangle {
                width: 100
                height: 60
                color: LK.palette.accentSolid
                layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
                layer.effect: LKBlur {
                    deviation: 8
                }
            }
        }
    }
}
