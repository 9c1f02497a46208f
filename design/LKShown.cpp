#include "design/LKShown.h"

#include <QtCore/QEvent>
#include <QtQuick/QQuickWindow>

namespace larkspan {

LKShown *LKShown::qmlAttachedProperties(QObject *object)
{
    auto *item = qobject_cast<QQuickItem *>(object);
    return item ? new LKShown(item) : nullptr;
}

LKShown::LKShown(QQuickItem *item) : QObject(item), m_item(item)
{
    connect(item, &QQuickItem::visibleChanged, this, &LKShown::update);
    connect(item, &QQuickItem::windowChanged, this, &LKShown::watch);
    watch(item->window());
}

bool LKShown::eventFilter(QObject *, QEvent *event)
{
    // Not on Show or Hide alone: a window on another desktop of the screen is visible, but not exposed.
    if (event->type() == QEvent::Expose) {
        // Queued: listeners change the window's content, which isn't allowed before the window has seen the event.
        QMetaObject::invokeMethod(this, &LKShown::update, Qt::QueuedConnection);
    }
    return false;
}

void LKShown::watch(QQuickWindow *window)
{
    if (m_window) {
        m_window->removeEventFilter(this);
    }
    m_window = window;
    if (m_window) {
        m_window->installEventFilter(this);
    }
    update();
}

void LKShown::update()
{
    const bool now = m_item->isVisible() && m_window && m_window->isExposed();
    if (m_now != now) {
        m_now = now;
        Q_EMIT nowChanged();
    }
}

} // namespace larkspan
