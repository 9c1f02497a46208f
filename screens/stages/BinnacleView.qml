import QtQuick
import Larkspan.Design
import Larkspan.Screens

// The screen of the tool: the title of the shoot, the view of its stage, and the footer with its actions.
FocusScope {
    id: view

    required property SortEngine engine
    required property int buildNumber
    // The reason why clips can't be analyzed on this machine; "" if they can.
    required property string classifierProblem
    // The row above the title lines; none by default.
    property Component header
    // The title on screens without a shoot.
    property string toolName: qsTr("Binnacle")

    readonly property url stageView: Stages.view(engine.stage)

    // Leads keyboard focus from the header or the footer to what is shown between them.
    function takeKeyboard() {
        middle.focus = true;
    }

    // Moves focus to the new stage, even if the button that was pressed is still visible.
    onStageViewChanged: {
        middle.setSource(stageView, {
                "engine": view.engine
            });
        takeKeyboard();
    }

    Rectangle {
        anchors.fill: parent
        color: LK.palette.surfaceWindow
    }

    SortSounds {
        engine: view.engine
    }

    CopyNotes {
        id: notes

        engine: view.engine
    }

    Loader {
        id: headerRow

        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        sourceComponent: view.header
    }

    BinnacleTitle {
        id: title

        anchors.top: headerRow.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        engine: view.engine
        toolName: view.toolName
    }

    ProblemBanner {
        id: problem

        anchors.top: title.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        message: view.classifierProblem
    }

    ProblemBanner {
        id: unreadable

        anchors.top: problem.bottom
        anchors.topMargin: visible && problem.visible ? 6 : 0
        anchors.left: parent.left
        anchors.right: parent.right
        message: notes.unreadable
        dismissible: true
        onDismissed: {
            // The button disappears, and focus with it.
            middle.forceActiveFocus(Qt.OtherFocusReason);
            view.engine.dismissUnreadableCards();
        }
    }

    ProblemBanner {
        id: unfinished

        anchors.top: unreadable.bottom
        anchors.topMargin: visible && (problem.visible || unreadable.visible) ? 6 : 0
        anchors.left: parent.left
        anchors.right: parent.right
        message: notes.unfinished
        dismissible: true
        onDismissed: {
            middle.forceActiveFocus(Qt.OtherFocusReason);
            view.engine.dismissUnfinishedCopies();
        }
    }

    Loader {
        id: middle

        anchors.top: unfinished.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: footer.top
        focus: true
    }

    BinnacleFooter {
        id: footer

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        engine: view.engine
        buildNumber: view.buildNumber
    }
}
