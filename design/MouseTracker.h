#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/WindowFilter.h"

namespace larkspan {

// Sees the pointer within its area and takes nothing from the items above or below it: the window's events are watched
// on their way, not received. Only while it is visible and enabled.
class MouseTracker : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit MouseTracker(QQuickItem *parent = nullptr);

Q_SIGNALS:
    // In the item's coordinates.
    void move(QPointF point);
    void click(QPointF point); // the left button went down
    void exit();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void see(const QEvent &event);
    void pointerAt(QPointF scenePoint);
    void pointerGone();

    bool m_isInside = false;
    WindowFilter m_filter{*this, [this](const QEvent &event) {
                              see(event);
                              return false;
                          }};
};

} // namespace larkspan
