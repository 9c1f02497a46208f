#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/WindowFilter.h"

namespace larkspan {

// Follows the pointer within its area while it is visible and enabled. It watches the window's events without taking
// any from the items above or below it.
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
