pragma ComponentBehavior: Bound
import QtQuick
import Larkspan.Design
import Larkspan.Screens

// Offers to bring in the footage of a card that was found. Nothing is copied before the editor accepts here.
FocusScope {
    id: prompt

    required property SortEngine engine
    // The card on offer; its clips count once they are counted.
    required property string displayName
    required property bool isCounted
    required property int clipCount

    readonly property bool needsFolder: engine.importRootPath === ""
    readonly property string title: needsFolder ? qsTr("Set a Shoots folder first") : qsTr("SD card detected")
    readonly property string body: {
        if (needsFolder)
            return qsTr("Choose a Shoots folder in Preferences so Binnacle knows where to organize footage from a card.");
        if (!isCounted)
            return Wording.of(qsTr("%1 — looking for clips…"), [displayName]);
        const found = clipCount === 1 ? qsTr("1 clip found.") : qsTr("%1 clips found.").arg(clipCount);
        return Wording.of(qsTr("%1 · %2 Import and sort it into your Shoots folder?"), [displayName, found]);
    }

    readonly property bool endsCopy: !needsFolder && engine.isCopying && (engine.stage === SortEngine.Working || engine.stage === SortEngine.Organizing)
    readonly property string warning: qsTr("Importing this card stops the copy that is running.")

    // Nothing lies above the prompt.
    property bool isTopmost: true
    // A key that was meant for what the prompt has come up over answers nothing. The pointer may answer at once.
    readonly property bool answersKeys: d.isLookedAt
    readonly property int patience: 500 // milliseconds in sight, topmost and with keyboard focus

    signal accept
    signal decline
    signal openPreferences

    function answer() {
        if (needsFolder)
            openPreferences();
        else
            accept();
    }

    implicitWidth: 360
    implicitHeight: column.implicitHeight + 2 * 28

    // Every card is asked about anew, whatever was pressed for the one before.
    onDisplayNameChanged: {
        d.lookAgain();
        d.hasWarned = endsCopy;
    }
    onEndsCopyChanged: d.hasWarned = d.hasWarned || endsCopy

    QtObject {
        id: d

        readonly property bool isInReach: prompt.isTopmost && prompt.activeFocus
        property bool isLookedAt: false
        // The warning keeps its room, so that the buttons stand still when the copy ends.
        property bool hasWarned: false

        onIsInReachChanged: lookAgain()

        function lookAgain() {
            isLookedAt = false;
            waiting.focus = true;
            if (isInReach)
                look.restart();
            else
                look.stop();
        }
    }

    Timer {
        id: look

        objectName: "patience"
        interval: prompt.patience
        onTriggered: {
            d.isLookedAt = true;
            primary.forceActiveFocus(Qt.PopupFocusReason);
        }
    }

    // Has keyboard focus until keys may answer, and swallows them.
    Item {
        id: waiting

        focus: true
        Keys.onPressed: event => event.accepted = true
    }

    Accessible.role: Accessible.Dialog
    Accessible.name: title
    Accessible.description: body + (needsFolder ? "" : " " + verification.note) + (endsCopy ? " " + warning : "")

    LKModalPanel {
        anchors.fill: parent
        cornerRadius: 14

        // What lies below is not to be reached through the card.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
            onWheel: event => event.accepted = true
        }
    }

    Column {
        id: column

        anchors.centerIn: parent
        width: parent.width
        spacing: 14

        LKRectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 44
            height: 44
            radius: 10
            color: LK.palette.accentSubtle

            LKIcon {
                anchors.centerIn: parent
                name: prompt.needsFolder ? "folder" : "sdcard"
                size: 28
                color: LK.palette.accent
            }
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: prompt.title
            font: LK.font(15, Font.DemiBold)
            color: LK.palette.textPrimary
            textFormat: Text.PlainText
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 300
            // Room for the count, so that the buttons stand still when it comes.
            height: Math.max(implicitHeight, Math.ceil(2 * metrics.lineSpacing))
            text: prompt.body
            font: LK.font(12.5)
            color: LK.palette.textSecondary
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.Wrap
            maximumLineCount: 6
            elide: Text.ElideRight
            textFormat: Text.PlainText

            FontMetrics {
                id: metrics

                font: LK.font(12.5)
            }
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: !prompt.needsFolder
            text: verification.note
            font: LK.font(11)
            color: LK.palette.textTertiary
            Accessible.role: Accessible.StaticText
            Accessible.name: text

            Verification {
                id: verification

                engine: prompt.engine
            }
        }

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: d.hasWarned
            width: 300
            height: notice.implicitHeight

            Text {
                id: notice

                anchors.fill: parent
                visible: prompt.endsCopy
                text: prompt.warning
                font: LK.font(12.5, Font.Medium)
                color: LK.palette.textPrimary
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
            }
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 8

            LKButton {
                size: LKButton.Lg
                title: qsTr("Not Now")
                onActivated: prompt.decline()
            }

            LKButton {
                id: primary

                kind: LKButton.Accent
                size: LKButton.Lg
                title: prompt.needsFolder ? qsTr("Open Preferences") : qsTr("Import & Sort")
                onActivated: prompt.answer()
            }
        }
    }
}
