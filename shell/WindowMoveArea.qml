import QtQuick

// Where the window is taken hold of, as at a title bar: dragged to move it, pressed twice to fill the screen or to go
// back. Lies behind what can be pressed.
MouseArea {
    id: area

    property point hold

    onPressed: mouse => hold = Qt.point(mouse.x, mouse.y)
    onPositionChanged: mouse => {
        if (Math.abs(mouse.x - hold.x) + Math.abs(mouse.y - hold.y) >= drag.threshold)
            area.Window.window.startSystemMove();
    }
    onDoubleClicked: {
        if (area.Window.window.visibility === Window.Maximized)
            area.Window.window.showNormal();
        else
            area.Window.window.showMaximized();
    }
}
