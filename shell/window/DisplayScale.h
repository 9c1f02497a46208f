#pragma once

#include <QtCore/QObject>
#include <QtGui/QWindow>

namespace larkspan {

// Keeps a window as large in points when the scale of its display changes under it, so far as the display has room, and
// its least size what it is in points. Without it a window on X11 keeps its pixels: its contents grow out of it, and
// the window system goes on letting it be as small as before. Main thread.
class DisplayScale : public QObject
{
    Q_OBJECT

public:
    // window: one that is shown, which owns what follows it.
    explicit DisplayScale(QWindow &window);

private:
    void followScreen(QScreen *screen);
    void adapt();

    QWindow &m_window;
    qreal m_scale = 1; // pixels of the window system to a point
};

} // namespace larkspan
