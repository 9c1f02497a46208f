import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKPressable, LKOverlayButton"
    note: "The base of all buttons and rows brings the keys, the focus ring and the dimming, and draws nothing else. The overlay button is for pictures, and looks the same in both themes."

    Row {
        spacing: 32

        GallerySample {
            caption: "with a text and a surface"
            interactive: true

            LKPressable {
                id: plain

                words: "Press"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                implicitHeight: implicitContentHeight + topPadding + bottomPadding
                padding: 8
                contentItem: LKText {
                    text: plain.words
                    font: LK.font(12)
                }
                background: LKSurface {
                    radius: 5
                    color: plain.down ? LK.palette.surfacePressed : plain.hovered ? LK.palette.surfaceHover : "transparent"
                    stroke: LK.palette.borderSubtle
                }
            }
        }

        GallerySample {
            caption: "disabled"

            LKPressable {
                id: dimmed

                words: "Press"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                implicitHeight: implicitContentHeight + topPadding + bottomPadding
                padding: 8
                enabled: false
                contentItem: LKText {
                    text: dimmed.words
                    font: LK.font(12)
                }
                background: LKSurface {
                    radius: 5
                    color: "transparent"
                    stroke: LK.palette.borderSubtle
                }
            }
        }
    }

    Row {
        spacing: 32

        GallerySample {
            caption: "a word"
            interactive: true

            LKOverlayButton {
                id: word

                words: "Move"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                implicitHeight: implicitContentHeight + topPadding + bottomPadding
                leftPadding: 7
                rightPadding: 7
                topPadding: 3
                bottomPadding: 3
                contentItem: LKText {
                    text: word.words
                    font: LK.font(9.5, Font.Medium)
                    color: "white"
                }
            }
        }

        GallerySample {
            caption: "round, with a line"
            interactive: true

            LKOverlayButton {
                words: "Play"
                implicitWidth: 44
                implicitHeight: 44
                cornerRadius: 22
                stroke: Qt.rgba(1, 1, 1, 0.4)
                contentItem: Item {
                    LKIcon {
                        anchors.centerIn: parent
                        name: "play.fill"
                        size: 20
                        color: "white"
                    }
                }
            }
        }
    }
}
