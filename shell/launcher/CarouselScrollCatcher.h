#pragma once

#include <QtCore/QTimer>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/WindowFilter.h"
#include "shell/launcher/CarouselScroll.h"

class QWheelEvent;

namespace larkspan {

// Watches the window's scroll events over its area and makes drifts and steps of them, before anything else in the
// window sees them. Only while it is visible and enabled. Main thread.
class CarouselScrollCatcher : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit CarouselScrollCatcher(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void drift(double offset);
    void commit(int direction);
    void cancel();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    [[nodiscard]] bool isSwallowed(const QEvent &event);
    [[nodiscard]] bool isCaught(const QWheelEvent &event);
    [[nodiscard]] CarouselScroll::Phase phaseOf(const QWheelEvent &event);
    void endGesture();

    CarouselScroll m_scroll;
    QTimer m_pause{this}; // runs while a gesture goes on of which the display tells neither begin nor end
    WindowFilter m_filter{*this, [this](const QEvent &event) { return isSwallowed(event); }};
};

} // namespace larkspan
