import QtQuick
import Larkspan.Design

// The buttons of a title bar: close, minimize, maximize.
Row {
    id: controls

    readonly property bool isMaximized: Window.visibility === Window.Maximized

    spacing: 4
    opacity: Window.active ? 1 : 0.6
    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Window")

    IconButton {
        focusPolicy: Qt.NoFocus
        name: "xmark"
        help: qsTr("Close")
        hoverTint: LK.palette.danger
        onActivated: controls.Window.window.close()
    }

    IconButton {
        focusPolicy: Qt.NoFocus
        name: "minus"
        help: qsTr("Minimize")
        hoverTint: LK.palette.textPrimary
        onActivated: controls.Window.window.showMinimized()
    }

    IconButton {
        focusPolicy: Qt.NoFocus
        name: "square"
        help: controls.isMaximized ? qsTr("Restore") : qsTr("Maximize")
        hoverTint: LK.palette.textPrimary
        onActivated: {
            if (controls.isMaximized)
                controls.Window.window.showNormal();
            else
                controls.Window.window.showMaximized();
        }
    }
}
