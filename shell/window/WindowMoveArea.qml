import QtQuick

// Acts as a title bar below the controls: dragging moves the window, a double click maximizes or restores it.
MouseArea {
    id: area

    property point hold
    property bool isMoving: false // the present press has become a move of the window

    // A click that didn't move the window.
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
