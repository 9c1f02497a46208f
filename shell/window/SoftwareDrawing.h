#pragma once

#include <QtCore/QStringList>

class QQuickWindow;

namespace larkspan {

// The program's argument that has its windows drawn without OpenGL.
inline constexpr auto softwareDrawingOption = u"--software";

// Obeys that argument if it is among these. Main thread, before the first window.
void chooseDrawing(const QStringList &arguments);

// Starts the program again with that argument where OpenGL can't be had: a driver that is missing or broken shows only
// with the first window, and how to draw is settled by then. Looks no further than the window's first frame, so that
// work which was begun is never ended by it. Main thread.
void drawWithoutOpenGLWhereItFails(QQuickWindow &window);

} // namespace larkspan
