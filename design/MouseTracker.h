#pragma once

#include <QtCore/QPointer>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace larkspan {

// Sees the pointer within its area and takes nothing from what lies above or below it: the window's events are watched
// on their way, not received. Only while it is visible and enabled.
class MouseTracker : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit MouseTracker(QQuickItem *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    // In the item's coordinates.
    void move(QPointF point);
    void click(QPointF point); // the left button went down
    void exit();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void pointerAt(QPointF scenePoint);
    void pointerGone();

    QPointer<QQuickWindow> m_watched;
    bool m_isInside = false;
};

} // namespace larkspan
