#include "design/MouseTracker.h"

#include <QtGui/QMouseEvent>

namespace larkspan {

MouseTracker::MouseTracker(QQuickItem *parent) : QQuickItem(parent) {}

bool MouseTracker::eventFilter(QObject *, QEvent *event)
{
    if (isVisible() && isEnabled()) {
        switch (event->type()) {
        case QEvent::MouseMove:
            if (const auto *moved = static_cast<QMouseEvent *>(event); moved->buttons() == Qt::NoButton) {
                pointerAt(moved->scenePosition());
            }
            break;
        case QEvent::MouseButtonPress:
            if (const auto *press = static_cast<QMouseEvent *>(event); press->button() == Qt::LeftButton) {
                if (const QPointF point = mapFromScene(press->scenePosition()); contains(point)) {
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
    return false;
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
    if (change == ItemSceneChange) {
        if (m_watched) {
            m_watched->removeEventFilter(this);
        }
        m_watched = value.window;
        if (m_watched) {
            m_watched->installEventFilter(this);
        }
    } else if (change == ItemVisibleHasChanged || change == ItemEnabledHasChanged) {
        if (!value.boolValue) {
            pointerGone();
        }
    }
    QQuickItem::itemChange(change, value);
}

} // namespace larkspan
