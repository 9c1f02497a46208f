#pragma once

#include <functional>

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/FrameTicks.h"

namespace larkspan {

// The base of moving backgrounds. It takes one step for each frame of the display while anything moves and anyone can
// see it; in boringMode it draws one still picture and nothing after it. Main thread, but for updatePaintNode.
class Backdrop : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each background draws its own.")

public:
    // Seconds; it may run in any manner, or stand.
    using Clock = std::function<double()>;

    explicit Backdrop(QQuickItem *parent = nullptr);

    // Another clock than the machine's, for a picture of a chosen moment. now() starts over at 0.
    void setClock(Clock clock);
    // A frame is asked for whenever the display can show one.
    [[nodiscard]] bool isMoving() const;

protected:
    // One frame. False when nothing will change any more until wake().
    virtual bool advance() = 0;
    // Back to the one picture that is shown where nothing may move.
    virtual void beStill() = 0;

    void wake();
    // Since the item was made.
    [[nodiscard]] double now() const { return m_clock() - m_start; }
    // The length of a device pixel.
    [[nodiscard]] double pixel() const;
    // Returns whether there is anything to draw, and something to draw it with.
    [[nodiscard]] bool canDraw() const;

    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    [[nodiscard]] bool canBeSeen() const;
    void step();
    void boringModeChanged();
    void visibilityChanged();

    Clock m_clock;
    double m_start;
    FrameTicks m_frames;
    QMetaObject::Connection m_windowVisibility;
};

} // namespace larkspan
