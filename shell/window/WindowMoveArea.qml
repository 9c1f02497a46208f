import QtQuick

// Acts as a title bar: dragged to move the window, pressed twice to fill the screen or to go back. It is behind the
// controls.
MouseArea {
    id: area

    property point hold
    property bool isMoving: false // since it was pressed last

    // Pressed and let go again without having moved the window.
    signal tapped

    onPressed: mouse => {
        hold = Qt.point(mouse.x, mouse.y);
        isMoving = false;
    }
    onPositionChanged: mouse => {
        if (isMoving || Math.abs(mouse.x - hold.x) + Math.abs(mouse.y - hold.y) < drag.threshold)
            return;
        isMoving = true;
        area.Window.window.startSystemMove();
    }
    onClicked: {
        if (!isMoving)
            tapped();
    }
    onDoubleClicked: {
        if (area.Window.window.visibility === Window.Maximized)
            area.Window.window.showNormal();
        else
            area.Window.window.showMaximized();
    }
}
