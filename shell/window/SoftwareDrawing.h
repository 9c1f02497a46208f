#pragma once

#include <QtCore/QStringList>

class QQuickWindow;

namespace larkspan {

// The program's argument that has its windows drawn without OpenGL.
inline constexpr auto softwareDrawingOption = u"--software";

// Chooses software drawing if that argument is among these. Main thread, before the first window.
void chooseDrawing(const QStringList &arguments);

// Starts the program again with that argument if OpenGL fails. A missing or broken driver shows only with the first
// window, when the way to draw can't be changed any more. Failures after the window's first frame are ignored, so that
// no work is lost by a restart. Main thread.
void drawWithoutOpenGLWhereItFails(QQuickWindow &window);

} // namespace larkspan
