#include "design/LKShown.h"

#include <QtCore/QEvent>

namespace larkspan {

LKShown *LKShown::qmlAttachedProperties(QObject *object)
{
    auto *item = qobject_cast<QQuickItem *>(object);
    return item ? new LKShown(item) : nullptr;
}

LKShown::LKShown(QQuickItem *item)
    : QObject(item)
    , m_item(item)
    , m_filter(*item, [this](const QEvent &event) {
        see(event);
        return false;
    })
{
    connect(item, &QQuickItem::visibleChanged, this, &LKShown::update);
    connect(item, &QQuickItem::windowChanged, this, &LKShown::update); // after the filter's
    update();
}

void LKShown::see(const QEvent &event)
{
    // Not on Show or Hide alone: a window on another desktop of the screen is visible, but not exposed.
    if (event.type() == QEvent::Expose) {
        // Queued: listeners change the window's content, which isn't allowed before the window has seen the event.
        QMetaObject::invokeMethod(this, &LKShown::update, Qt::QueuedConnection);
    }
}

void LKShown::update()
{
    const bool now = m_item->isVisible() && m_filter.window() && m_filter.window()->isExposed();
    if (m_now != now) {
        m_now = now;
        Q_EMIT nowChanged();
    }
}

} // namespace larkspan
