#pragma once

#include <QtCore/QObject>
#include <QtGui/QWindow>

namespace larkspan {

// Keeps a window's size and its minimum size in points when the scale of its display changes, as far as the display has
// room. Without it a window on X11 keeps both in pixels, and becomes too small for its content. Main thread.
class DisplayScale : public QObject
{
    Q_OBJECT

public:
    // window: a shown one. It becomes the owner of this object.
    explicit DisplayScale(QWindow &window);

#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    // Newer Qt tells the window of its scale, and no longer of the screen's resolution.
    bool eventFilter(QObject *watched, QEvent *event) override;
#endif

private:
    void followScreen(QScreen *screen);
    void adapt(); // to be called queued: the screen's available geometry changes after its scale

    QWindow &m_window;
    qreal m_scale = 1; // pixels of the window system to a point
};

} // namespace larkspan
