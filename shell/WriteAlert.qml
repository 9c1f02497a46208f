import QtQuick
import Larkspan.Shell

// Says that a diagnostic text couldn't be written.
ModalOverlay {
    id: alert

    required property DiagnosticsExport diagnostics

    shown: diagnostics.problem !== ""
    scrimOpacity: 0.45
    onEscaped: diagnostics.dismissProblem()

    MessageCard {
        focus: true
        title: qsTr("The file couldn't be written")
        answers: [qsTr("OK")]
        onAnswered: alert.diagnostics.dismissProblem()

        // Keeps the words of a dismissed alert while it fades.
        Binding on message  {
            value: alert.diagnostics.problem
            when: alert.shown
            restoreMode: Binding.RestoreNone
        }
    }
}
