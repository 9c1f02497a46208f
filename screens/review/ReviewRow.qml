import QtQuick
import QtQuick.Layouts
import Larkspan.Design
import Larkspan.Screens

// A clip under review: its picture, the reason, and the controls that settle it.
Item {
    id: row

    required property int index
    required property string fileName
    required property url thumbnail
    required property string primaryBin
    required property string reviewReason
    required property BinChoices choices
    property bool showsFocus: false

    readonly property bool isUnsorted: primaryBin === choices.unsorted

    signal previewAsked
    signal reassigned(string bin)
    signal confirmed
    // The choice that chooseBin() asked for is over, whether made or not.
    signal choiceOver

    function chooseBin() {
        bins.isAsked = true;
        bins.forceActiveFocus(Qt.TabFocusReason);
        bins.popup.open();
    }

    implicitHeight: 54 + 2 * 8

    Accessible.role: Accessible.ListItem
    Accessible.name: Wording.of(qsTr("%1, %2, %3"), [fileName, primaryBin, reviewReason])
    Accessible.selectable: true
    Accessible.selected: showsFocus
    Accessible.focusable: true
    Accessible.focused: showsFocus

    HoverHandler {
        id: hover
    }

    Rectangle {
        anchors.fill: parent
        color: row.showsFocus ? LK.palette.surfaceSelected : hover.hovered ? LK.palette.surfaceHover : "transparent"

        LKColorBehavior on color  {
        }

        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            height: 1
            color: LK.palette.borderSubtle
        }
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 14
        spacing: 12

        LKPressable {
            id: still

            Layout.preferredWidth: 96
            Layout.preferredHeight: 54
            focusPolicy: Qt.NoFocus
            onActivated: row.previewAsked()

            Accessible.name: Wording.of(qsTr("Open preview of %1"), [row.fileName])

            contentItem: ClipPicture {
                picture: row.thumbnail
                cornerRadius: 4
                opacity: still.down ? 0.7 : still.hovered ? 0.85 : 1

                Behavior on opacity  {
                    LKNumberMotion {
                    }
                }
            }

            LKToolTip {
                text: qsTr("Open preview")
                wanted: still.hovered
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            LKText {
                Layout.fillWidth: true
                text: row.fileName
                font: LK.font(11.5)
                elide: Text.ElideMiddle
            }

            LKText {
                Layout.fillWidth: true
                text: row.reviewReason
                font: LK.font(11)
                color: LK.palette.textSecondary
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
        }

        BinDropdown {
            id: bins

            property bool isAsked: false

            Layout.preferredWidth: 190
            tone: row.isUnsorted ? LKDropdown.Caution : LKDropdown.Standard
            label: Wording.of(qsTr("Bin of %1"), [row.fileName])
            names: row.choices.names
            bin: row.primaryBin
            onChosen: bin => row.reassigned(bin)

            Connections {
                target: bins.popup
                function onAboutToHide() {
                    if (!bins.isAsked)
                        return;
                    bins.isAsked = false;
                    bins.focus = false; // otherwise the list would pass focus back to it
                    row.choiceOver();
                }
            }
        }

        LKButton {
            title: qsTr("Confirm")
            onActivated: row.confirmed()
        }
    }
}
