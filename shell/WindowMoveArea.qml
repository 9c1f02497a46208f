import QtQuick

// Where the window is taken hold of, as at a title bar: dragged to move it, pressed twice to fill the screen or to go
// back. Lies behind what can be pressed.
Item {
    id: area

    TapHandler {
        gesturePolicy: TapHandler.DragThreshold
        onDoubleTapped: {
            if (area.Window.window.visibility === Window.Maximized)
                area.Window.window.showNormal();
            else
                area.Window.window.showMaximized();
        }
    }

    DragHandler {
        target: null
        onActiveChanged: {
            if (active)
                area.Window.window.startSystemMove();
        }
    }
}
