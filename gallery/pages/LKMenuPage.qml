import QtQuick
import Larkspan.Design
import Larkspan.Gallery

GalleryPage {
    title: "LKMenu, LKPopover"
    note: "What floats above the rest for a while, and goes with Escape."

    Row {
        spacing: 24

        LKButton {
            title: "Open a menu"
            onActivated: menu.popup(this, 0, height + 4)

            LKMenu {
                id: menu

                LKMenuItem {
                    text: "Show in the folder"
                }
                LKMenuItem {
                    text: "Rename"
                    marked: true
                }
                LKMenuSeparator {
                }
                LKMenuItem {
                    text: "Move to bin"
                    enabled: false
                }
                LKMenu {
                    title: "More"

                    LKMenuItem {
                        text: "Take out"
                    }
                }
            }
        }

        LKButton {
            title: "Open a popover"
            onActivated: popover.open()

            LKPopover {
                id: popover

                contentItem: LKText {
                    text: "As wide as what it says."
                    font: LK.font(12)
                    padding: 12
                }
            }
        }
    }
}
