import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// Says that a diagnostic text or the report of a copy couldn't be written.
ModalOverlay {
    id: alert

    required property DiagnosticsExport diagnostics
    required property CopyHistory copies

    readonly property string problem: diagnostics.problem !== "" ? diagnostics.problem : copies.problem

    function dismiss() {
        diagnostics.dismissProblem();
        copies.dismissProblem();
    }

    kind: OverlayStack.WriteAlert
    shown: problem !== ""
    scrimOpacity: 0.45
    onDismissed: dismiss()

    MessageCard {
        focus: true
        title: qsTr("The file couldn't be written")
        answers: [qsTr("OK")]
        onAnswered: alert.dismiss()

        // Keeps the words of a dismissed alert while it fades.
        Binding on message  {
            value: alert.problem
            when: alert.shown
            restoreMode: Binding.RestoreNone
        }
    }
}
