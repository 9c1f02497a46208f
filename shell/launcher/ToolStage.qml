import QtQuick
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The launcher, and the tool that grows out of it and shrinks back into it.
FocusScope {
    id: stage

    required property AppState app
    required property SortEngine engine
    required property int buildNumber
    required property string classifierProblem
    property bool isCovered: false // by an overlay

    readonly property bool hasTool: app.view === AppState.Tool

    FocusScope {
        id: launcher

        objectName: "launcher"
        anchors.fill: parent
        focus: !stage.hasTool
        visible: opacity > 0
        opacity: stage.hasTool ? 0 : 1

        Behavior on opacity  {
            LKNumberMotion {
                duration: LK.motion.toolIn
            }
        }

        HomeView {
            anchors.fill: parent
            focus: true
            app: stage.app
            isCovered: stage.isCovered
        }
    }

    FocusScope {
        id: tool

        objectName: "tool"
        // True until the tool has faded out: it shrinks and blurs, and is still visible when the launcher appears.
        readonly property bool isLeaving: stage.app.closing || visible && !stage.hasTool
        property real blur: isLeaving ? 8 : 0
        readonly property int pace: stage.app.closing ? LK.motion.toolOut : LK.motion.toolIn

        anchors.fill: parent
        focus: stage.hasTool
        visible: opacity > 0
        opacity: stage.hasTool ? 1 : 0
        scale: isLeaving ? 0.92 : 1
        layer.enabled: blur > 0 && GraphicsInfo.api !== GraphicsInfo.Software
        layer.effect: LKBlur {
            deviation: tool.blur // qmllint disable
        }

        Behavior on opacity  {
            LKNumberMotion {
                duration: tool.pace
            }
        }
        Behavior on scale  {
            enabled: stage.hasTool || stage.app.closing
            LKNumberMotion {
                duration: tool.pace
            }
        }
        Behavior on blur  {
            enabled: stage.hasTool || stage.app.closing
            LKNumberMotion {
                duration: tool.pace
            }
        }

        // Created at its first use and then kept, so that the tool is unchanged when the user returns to it.
        Loader {
            id: binnacle

            readonly property bool isOpen: stage.app.isSortToolOpen

            anchors.fill: parent
            visible: stage.app.toolID === "binnacle"
            focus: stage.app.toolID === "binnacle"
            Component.onCompleted: makeOnce()
            onIsOpenChanged: makeOnce()

            function makeOnce() {
                if (isOpen && status === Loader.Null)
                    setSource("SortTool.qml", {
                            "app": stage.app,
                            "engine": stage.engine,
                            "buildNumber": stage.buildNumber
                        });
            }
        }

        Binding {
            target: binnacle.item
            property: "classifierProblem"
            value: stage.classifierProblem
        }

        Loader {
            anchors.fill: parent
            active: stage.hasTool && !stage.app.isSortToolOpen
            focus: active

            sourceComponent: InDevelopmentView {
                focus: true
                app: stage.app // qmllint disable
                tool: ToolCatalogue.current(stage.app.toolID) // qmllint disable
                header: HeaderRow {
                    app: stage.app // qmllint disable
                    engine: stage.engine // qmllint disable
                }
            }
        }
    }
}
