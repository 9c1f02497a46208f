#include "shell/window/DisplayScale.h"

#include <QtCore/QEvent>
#include <QtGui/private/qhighdpiscaling_p.h>
#include <QtGui/qpa/qplatformwindow.h>
#include <QtGui/qpa/qwindowsysteminterface.h>
#include <QtGui/QScreen>

namespace larkspan {

namespace {

QRect fittedTo(const QRect &area, QRect rect)
{
    rect.setSize(rect.size().boundedTo(area.size()));
    rect.moveRight(std::min(rect.right(), area.right()));
    rect.moveBottom(std::min(rect.bottom(), area.bottom()));
    rect.moveLeft(std::max(rect.left(), area.left()));
    rect.moveTop(std::max(rect.top(), area.top()));
    return rect;
}

} // namespace

DisplayScale::DisplayScale(QWindow &window) : QObject(&window), m_window(window)
{
    connect(&window, &QWindow::screenChanged, this, &DisplayScale::followScreen);
    followScreen(window.screen());
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    window.installEventFilter(this);
#endif
}

void DisplayScale::followScreen([[maybe_unused]] QScreen *screen)
{
    m_scale = QHighDpiScaling::factor(&m_window);
#if QT_VERSION < QT_VERSION_CHECK(6, 6, 0)
    if (screen) {
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, &DisplayScale::adapt,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    }
#endif
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
bool DisplayScale::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::DevicePixelRatioChange) {
        QMetaObject::invokeMethod(this, &DisplayScale::adapt, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
#endif

void DisplayScale::adapt()
{
    QPlatformWindow *native = m_window.handle();
    const qreal scale = QHighDpiScaling::factor(&m_window);
    const qreal before = std::exchange(m_scale, scale);
    if (!native || scale == before) {
        return;
    }
    const QRect pixels = native->geometry();
    // Qt works out the size in points anew only when the window system reports one in pixels.
    QWindowSystemInterface::handleGeometryChange<QWindowSystemInterface::SynchronousDelivery>(&m_window, pixels);
    native->propagateSizeHints();
    if (m_window.windowState() == Qt::WindowNoState) {
        const QSize size = (QSizeF(pixels.size()) / before).toSize();
        m_window.setGeometry(fittedTo(m_window.screen()->availableGeometry(), {m_window.position(), size}));
    }
}

} // namespace larkspan
