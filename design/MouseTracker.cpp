#include "design/MouseTracker.h"

#include <QtGui/QMouseEvent>

namespace larkspan {

MouseTracker::MouseTracker(QQuickItem *parent) : QQuickItem(parent) {}

void MouseTracker::see(const QEvent &event)
{
    if (!isVisible() || !isEnabled()) {
        return;
    }
    switch (event.type()) {
    case QEvent::MouseMove:
        if (const auto &moved = static_cast<const QMouseEvent &>(event); moved.buttons() == Qt::NoButton) {
            pointerAt(moved.scenePosition());
        }
        break;
    case QEvent::MouseButtonPress:
        if (const auto &press = static_cast<const QMouseEvent &>(event); press.button() == Qt::LeftButton) {
            if (const QPointF point = mapFromScene(press.scenePosition()); contains(point)) {
                Q_EMIT click(point);
            }
        }
        break;
    case QEvent::Leave:
        pointerGone();
        break;
    default:
        break;
    }
}

void MouseTracker::pointerAt(QPointF scenePoint)
{
    const QPointF point = mapFromScene(scenePoint);
    if (contains(point)) {
        m_isInside = true;
        Q_EMIT move(point);
    } else {
        pointerGone();
    }
}

void MouseTracker::pointerGone()
{
    if (m_isInside) {
        m_isInside = false;
        Q_EMIT exit();
    }
}

void MouseTracker::itemChange(ItemChange change, const ItemChangeData &value)
{
    if ((change == ItemVisibleHasChanged || change == ItemEnabledHasChanged) && !value.boolValue) {
        pointerGone();
    }
    QQuickItem::itemChange(change, value);
}

} // namespace larkspan
