pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Shell

// Writes the sorted shoot for another program: in which format, with which paths, and where.
FocusScope {
    id: sheet

    required property HandoffExport handoff

    // Room for the example and the outcome, so that the sheet stands still when they change.
    component Note: LKText {
        width: column.width
        font: LK.font(11)
        color: LK.palette.textTertiary
        wrapMode: Text.WrapAnywhere
        maximumLineCount: 2
        elide: Text.ElideMiddle
        isRead: true
    }

    implicitWidth: 480
    implicitHeight: column.implicitHeight + 48
    Accessible.role: Accessible.Dialog
    Accessible.name: title.text

    LKRowKeys {
        id: keys

        rowCount: rows.count
        onWalked: row => {
            sheet.handoff.format = sheet.handoff.formats[row].value;
            rows.itemAt(row).forceActiveFocus(Qt.TabFocusReason);
        }
    }

    LKModalPanel {
        anchors.fill: parent
    }

    Column {
        id: column

        x: 24
        y: 24
        width: parent.width - 48
        spacing: 12

        LKText {
            id: title

            text: qsTr("Export For…")
            font: LK.font(15, Font.DemiBold)
            Accessible.role: Accessible.Heading
            isRead: true
        }

        Column {
            width: parent.width
            spacing: 2
            Accessible.role: Accessible.Grouping
            Accessible.name: qsTr("Format")

            Repeater {
                id: rows

                model: sheet.handoff.formats

                HandoffFormatRow {
                    required property int index
                    required property var modelData

                    width: column.width
                    label: modelData.label
                    detail: modelData.detail
                    selected: sheet.handoff.format === modelData.value
                    onActivated: sheet.handoff.format = modelData.value
                    Keys.onPressed: event => event.accepted = keys.take(event.key, index)
                }
            }
        }

        Row {
            spacing: 12

            LKText {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("It will be opened on")
                font: LK.font(12.5)
                color: LK.palette.textSecondary
            }

            LKSegmented {
                label: qsTr("Where the media will be")
                options: sheet.handoff.places
                selection: sheet.handoff.place
                onActivated: value => sheet.handoff.place = value
            }
        }

        Note {
            text: qsTr("Clips as %1").arg(sheet.handoff.example)
        }

        Item {
            width: column.width
            height: Math.max(outcome.height, reading.height)

            Note {
                id: outcome

                visible: !sheet.handoff.isReading
                text: sheet.handoff.outcome
                color: sheet.handoff.problem !== "" ? LK.palette.danger : sheet.handoff.isWritten ? LK.palette.textPrimary : LK.palette.textTertiary
            }

            LKProgressBar {
                id: reading

                width: parent.width
                visible: sheet.handoff.isReading
                label: qsTr("Reading the clips' timecodes")
                done: sheet.handoff.readCount
                total: sheet.handoff.readTotal
            }
        }

        Row {
            anchors.right: parent.right
            spacing: 8

            LKButton {
                focus: sheet.handoff.isReading
                title: sheet.handoff.isWritten ? qsTr("Done") : qsTr("Cancel")
                onActivated: sheet.handoff.close()
            }

            LKButton {
                visible: !sheet.handoff.isWritten
                enabled: !sheet.handoff.isReading
                focus: visible && enabled
                kind: LKButton.Accent
                title: qsTr("Export")
                onActivated: sheet.handoff.write()
            }

            LKButton {
                visible: sheet.handoff.isWritten
                focus: visible
                kind: LKButton.Accent
                title: qsTr("Reveal")
                onActivated: sheet.handoff.reveal()
            }
        }
    }
}
