import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// The sort tool as the shell shows it, with the shell's header on top.
BinnacleView {
    id: tool

    required property AppState app

    focus: true
    classifierProblem: ""
    // A component that is bound to its file can't be loaded by another.
    header: Component {
        HeaderRow {
            app: tool.app // qmllint disable
            engine: tool.engine // qmllint disable
            onProjectChosen: tool.takeKeyboard() // qmllint disable
        }
    }
}
