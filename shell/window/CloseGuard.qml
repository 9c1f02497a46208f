import QtQuick
import Larkspan.Screens
import Larkspan.Shell

// Keeps the window from closing over a copy that is under way: asks, and closes when the copy has ended in order.
ModalOverlay {
    id: guard

    required property SortEngine engine

    property bool asks: false
    // What the editor decided; the window closes once nothing is copied any more.
    property bool closesAfterwards: false
    property bool wasCancelled: false

    // Whether the window may close now. Otherwise the editor is asked.
    function allowsClosing(): bool {
        if (!engine.isCopying)
            return true;
        asks = true;
        return false;
    }

    shown: asks
    scrimOpacity: 0.45
    onEscaped: {
        if (!guard.closesAfterwards)
            guard.asks = false;
    }

    MessageCard {
        focus: true
        title: guard.closesAfterwards ? guard.wasCancelled ? qsTr("Stopping the copy…") : qsTr("Closing when the copy is done…") : qsTr("Footage is still being copied")
        message: guard.wasCancelled ? qsTr("The file that is being copied is finished and checked first, so that nothing half-made stays.") : guard.closesAfterwards ? qsTr("%1 of %2 files are copied. You can leave this window alone.").arg(guard.engine.done).arg(guard.engine.total) : qsTr("Larkspan can finish the copy and then close, or stop it after the file that is being copied. Nothing half-made stays either way, and no original is deleted before every copy is checked.")
        answers: guard.closesAfterwards ? [] : [qsTr("Stop and Close"), qsTr("Keep Open"), qsTr("Finish, Then Close")]
        onAnswered: index => {
            if (index === 1) {
                guard.asks = false;
                return;
            }
            // The copy may have ended while the question was fading.
            if (!guard.engine.isCopying) {
                guard.parent.Window.window.close();
                return;
            }
            guard.closesAfterwards = true;
            guard.wasCancelled = index === 0;
            if (guard.wasCancelled)
                guard.engine.resetToQuit();
        }
    }

    Connections {
        target: guard.engine
        function onIsCopyingChanged() {
            if (guard.engine.isCopying || !guard.asks)
                return;
            guard.asks = false;
            // A copy that failed, or that lacks clips, is first read about.
            const closes = guard.closesAfterwards && guard.engine.stage !== SortEngine.Failed && guard.engine.cardNote === "";
            guard.closesAfterwards = false;
            guard.wasCancelled = false;
            if (closes)
                guard.parent.Window.window.close();
        }
    }
}
