import QtQuick

// A place to resize the window by, handed over to the window system.
MouseArea {
    id: grip

    required property int edges

    cursorShape: {
        switch (edges) {
        case Qt.LeftEdge:
        case Qt.RightEdge:
            return Qt.SizeHorCursor;
        case Qt.TopEdge:
        case Qt.BottomEdge:
            return Qt.SizeVerCursor;
        case Qt.TopEdge | Qt.LeftEdge:
        case Qt.BottomEdge | Qt.RightEdge:
            return Qt.SizeFDiagCursor;
        default:
            return Qt.SizeBDiagCursor;
        }
    }

    onPressed: grip.Window.window.startSystemResize(grip.edges)
}
