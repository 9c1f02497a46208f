import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// The sort tool as the shell shows it, with the shell's header on top.
BinnacleView {
    id: tool

    required property AppState app

    focus: true
    classifierProblem: ""
}
