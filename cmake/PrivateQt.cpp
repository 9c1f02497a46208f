// All that is used of Qt's private interfaces, each with the source that uses it. Compiled when the build is
// configured, so that a newer Qt which changed one is told of there and not in the middle of a build. Never run.
#include <QtCore/private/qabstractanimation_p.h>
#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/private/qhighdpiscaling_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>
#include <QtGui/qpa/qplatformtheme.h>
#include <QtGui/qpa/qplatformwindow.h>
#include <QtGui/qpa/qwindowsysteminterface.h>
#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>
#include <QtQuick/private/qquickrectangle_p.h>
#include <QtQuick/private/qquickrectangle_p_p.h>

// design/LKAccessible.cpp: states and names that Qt Quick's own attached type lacks.
class Told : public QAccessibleQuickItem
{
public:
    explicit Told(QQuickItem *told) : QAccessibleQuickItem(told) {}

    QAccessible::Role role() const override { return QAccessibleQuickItem::role(); }
    QString text(QAccessible::Text text) const override { return QAccessibleQuickItem::text(text); }
    QAccessible::State state() const override { return QAccessibleQuickItem::state(); }
    QStringList actionNames() const override { return QAccessibleQuickItem::actionNames(); }
    bool hasInterface() const { return QQuickItemPrivate::get(item())->isAccessible; }
};

// design/LKRectangle.cpp: the border of the rectangle that it draws in another way.
class Bordered : public QQuickRectangle
{
public:
    qreal lineWidth() { return static_cast<QQuickRectanglePrivate *>(QQuickItemPrivate::get(this))->pen->width(); }
};

// shell/window/DisplayScale.cpp: a window that keeps its points where the display's scale changes.
qreal adapt(QWindow &window)
{
    QPlatformWindow *native = window.handle();
    native->propagateSizeHints();
    QWindowSystemInterface::handleGeometryChange<QWindowSystemInterface::SynchronousDelivery>(&window,
                                                                                              native->geometry());
    return QHighDpiScaling::factor(&window);
}

// shell/panels/FileChooserPortal.cpp: whether Qt asks the desktop's portal for files by itself.
bool isPortalUsed()
{
    return QGuiApplicationPrivate::platformTheme()->usePlatformNativeDialog(QPlatformTheme::FileDialog);
}

// tests/support/Motion.cpp: whether anything in the window still moves.
int movements()
{
    return QUnifiedTimer::instance()->runningAnimationCount();
}

// tests/support/ScreenReader.cpp: assistive technology that comes and goes.
void letScreenReaderCome()
{
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
}
