import QtQuick
import Larkspan.Design
import Larkspan.Screens
import Larkspan.Shell

// The program's window: the intro, then the launcher or a tool, and the overlays above them.
Window {
    id: root

    required property AppState app
    required property SortEngine engine
    required property VolumeWatcher volumeWatcher
    required property FileRequest fileRequest
    required property DiagnosticsExport diagnostics
    required property CoverageCheck coverage
    required property HandoffExport handoff
    required property int buildNumber
    property string classifierProblem

    readonly property size room: DisplayRoom.now()

    readonly property real glassBlur: 12 // of the overlays' glass, in points

    // The program is to play the intro's chime.
    signal introChimeDue

    title: windowTitle.text
    flags: Qt.Window | Qt.FramelessWindowHint
    width: Math.max(minimumWidth, Math.min(1180, room.width))
    height: Math.max(minimumHeight, Math.min(790, room.height))
    minimumWidth: 980
    minimumHeight: 640
    color: LK.palette.surfaceWindow
    visible: true

    onActiveFocusItemChanged: stage.takeKeyboardBack()
    onClosing: close => close.accepted = closeGuard.request.allowsClosing()

    WindowTitle {
        id: windowTitle

        engine: root.engine
        isActive: root.active
    }

    OverlayStack {
        id: overlays

        isWriting: root.activeFocusItem instanceof TextInput
    }

    // Works even under an overlay, as a menu bar's shortcut would.
    Shortcut {
        sequence: "Ctrl+,"
        context: Qt.ApplicationShortcut
        onActivated: root.app.openPreferences()
    }

    // Overlays handle Escape themselves, but none is shown during the intro.
    Shortcut {
        enabled: root.app.phase === AppState.Intro
        sequence: "Escape"
        autoRepeat: false
        onActivated: overlays.closeTopmost()
    }

    InputGuard {
        window: root
        scene: `${root.app.view} ${root.app.toolID} ${root.engine.stage} ${overlays.turns}`
    }

    FocusScope {
        id: stage

        readonly property bool isCovered: overlays.coveredUpTo > 0

        // A popup or a panel that closes leaves focus to the window's content item. The stage still knows the item that
        // had focus before.
        function takeKeyboardBack() {
            if (!isCovered && root.activeFocusItem === root.contentItem)
                stage.forceActiveFocus(Qt.PopupFocusReason);
        }

        onIsCoveredChanged: takeKeyboardBack()

        anchors.fill: parent
        focus: true

        layer.enabled: haze.deviation > 0 && GraphicsInfo.api !== GraphicsInfo.Software
        layer.effect: LKBlur {
            deviation: haze.deviation // qmllint disable
            cached: true // qmllint disable
        }

        QtObject {
            id: haze

            property real deviation: stage.isCovered ? root.glassBlur : 0

            Behavior on deviation  {
                LKNumberMotion {
                    duration: LK.motion.overlay
                }
            }
        }

        WindowMoveArea {
            width: parent.width
            height: 44
        }

        EditShortcuts {
            app: root.app
            engine: root.engine
        }

        ToolStage {
            anchors.fill: parent
            focus: true
            visible: opacity > 0
            opacity: root.app.phase === AppState.App ? 1 : 0
            app: root.app
            engine: root.engine
            buildNumber: root.buildNumber
            classifierProblem: root.classifierProblem
            isCovered: stage.isCovered

            Behavior on opacity  {
                LKNumberMotion {
                    duration: LK.motion.afterIntro
                }
            }
        }

        // Needs no transition when it is unloaded: it ends with an empty window.
        Loader {
            anchors.fill: parent
            active: root.app.phase === AppState.Intro

            sourceComponent: IntroView {
                onChimeDue: root.introChimeDue() // qmllint disable
                onFinished: root.app.finishIntro() // qmllint disable
            }
        }

        AppMenuButton {
            x: 94
            y: 11
            visible: root.app.phase === AppState.App
            app: root.app
            engine: root.engine
            coverage: root.coverage
            handoff: root.handoff
            onExportClips: root.diagnostics.exportClips()
            onExportVocabulary: root.diagnostics.exportVocabulary()
        }
    }

    WindowFrame {
        anchors.fill: parent
    }

    PopupFrost {
        level: overlays.coveredUpTo
        haze: root.glassBlur
    }

    ModalOverlay {
        id: preferences

        objectName: "preferencesOverlay"
        stack: overlays
        kind: OverlayStack.Preferences
        wanted: root.app.showPreferences
        shown: wanted && root.app.phase === AppState.App
        scrimOpacity: 0.4
        onAboutToShow: sheet.setSource("PreferencesSheet.qml", {
                "app": root.app,
                "engine": root.engine,
                "buildNumber": root.buildNumber,
                "focus": true
            })
        onClosed: sheet.source = ""
        onScrimTapped: root.app.showPreferences = false
        onDismissed: root.app.showPreferences = false

        Loader {
            id: sheet

            focus: true
        }
    }

    ModalOverlay {
        id: coverageSheet

        objectName: "coverageOverlay"
        stack: overlays
        kind: OverlayStack.Coverage
        wanted: root.coverage.isShown
        shown: wanted && root.app.phase === AppState.App
        scrimOpacity: 0.4
        onAboutToShow: findings.setSource("CoverageSheet.qml", {
                "coverage": root.coverage,
                "focus": true
            })
        onClosed: findings.source = ""
        onScrimTapped: root.coverage.close()
        onDismissed: root.coverage.close()

        Loader {
            id: findings

            focus: true
        }
    }

    ModalOverlay {
        id: handoffSheet

        objectName: "handoffOverlay"
        stack: overlays
        kind: OverlayStack.Handoff
        wanted: root.handoff.isShown
        shown: wanted && root.app.phase === AppState.App
        scrimOpacity: 0.4
        onScrimTapped: root.handoff.close()
        onDismissed: root.handoff.close()

        HandoffSheet {
            focus: true
            handoff: root.handoff
        }
    }

    CardOffer {
        id: cardOffer

        objectName: "importPromptOverlay"

        app: root.app
        engine: root.engine
        volumeWatcher: root.volumeWatcher
        stack: overlays
    }

    ModalOverlay {
        id: preview

        objectName: "previewOverlay"
        stack: overlays
        kind: OverlayStack.Preview
        wanted: root.engine.hasPreview
        shown: wanted && root.app.phase === AppState.App
        scrimOpacity: 0.5
        onAboutToShow: clipPreview.setSource("qrc:/qt/qml/Larkspan/Screens/ClipPreviewModal.qml", {
                "engine": root.engine,
                "focus": true
            })
        onClosed: clipPreview.source = ""
        onScrimTapped: root.engine.closePreview()
        onDismissed: root.engine.closePreview()

        EditShortcuts {
            enabled: preview.visible
            app: root.app
            engine: root.engine
        }

        Loader {
            id: clipPreview

            focus: true
        }
    }

    FilePanels {
        stack: overlays
        request: root.fileRequest
    }

    CloseGuard {
        id: closeGuard

        stack: overlays
        engine: root.engine
    }

    WriteAlert {
        id: writeAlert

        diagnostics: root.diagnostics
        stack: overlays
        copies: root.engine.copyHistory
    }
}
