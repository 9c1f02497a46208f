pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Shell

// The shoot against the bins that a listing needs: what is missing, what has one take only, and the choice of the bins.
// Arrows walk the bins, Space ticks one.
FocusScope {
    id: sheet

    required property CoverageCheck coverage

    property int currentRow: 0 // Tab stops at it

    // Room for a second line, so that the sheet stands still when a bin is ticked.
    component Finding: LKText {
        width: column.width
        height: 34
        font: LK.font(12.5)
        wrapMode: Text.Wrap
        maximumLineCount: 2
        isRead: true
    }

    implicitWidth: 680
    implicitHeight: column.implicitHeight + 48
    Accessible.role: Accessible.Dialog
    Accessible.name: title.text

    LKRowKeys {
        id: keys

        rowCount: rows.count
        rowsInColumn: 10
        onWalked: row => rows.itemAt(row).forceActiveFocus(Qt.TabFocusReason)
    }

    LKModalPanel {
        anchors.fill: parent
    }

    Column {
        id: column

        x: 24
        y: 24
        width: parent.width - 48
        spacing: 10

        LKText {
            id: title

            text: qsTr("Coverage")
            font: LK.font(15, Font.DemiBold)
            Accessible.role: Accessible.Heading
            isRead: true
        }

        Finding {
            text: sheet.coverage.missing
            color: sheet.coverage.isWhole ? LK.palette.textPrimary : LK.palette.danger
        }

        Finding {
            text: sheet.coverage.singleTakes
            color: sheet.coverage.hasSingleTakes ? LK.palette.warning : LK.palette.textSecondary
        }

        LKText {
            text: qsTr("Ticked: what a listing needs")
            font: LK.font(11)
            color: LK.palette.textTertiary
            isRead: true
        }

        Grid {
            flow: Grid.TopToBottom
            rows: keys.rowsInColumn
            columnSpacing: 16
            Accessible.role: Accessible.Grouping
            Accessible.name: qsTr("Bins that a listing needs")

            Repeater {
                id: rows

                model: sheet.coverage.names

                CoverageBinRow {
                    required property int index
                    required property string modelData

                    readonly property var found: sheet.coverage.rows[index]

                    width: (column.width - 16) / 2
                    bin: modelData
                    needed: found.needed
                    status: found.status
                    statusColor: found.missing ? LK.palette.danger : found.doubtful ? LK.palette.warning : LK.palette.textTertiary
                    focusPolicy: index === sheet.currentRow ? Qt.StrongFocus : Qt.ClickFocus
                    onActiveFocusChanged: {
                        if (activeFocus)
                            sheet.currentRow = index;
                    }
                    onTurned: needed => sheet.coverage.setNeeded(bin, needed)
                    Keys.onPressed: event => event.accepted = keys.take(event.key, index)
                }
            }
        }

        LKButton {
            anchors.right: parent.right
            focus: true
            kind: LKButton.Accent
            title: qsTr("Done")
            onActivated: sheet.coverage.close()
        }
    }
}
