#pragma once

#include <functional>

#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickItem>

#include "design/FrameTicks.h"

namespace larkspan {

// The base of moving backgrounds. It takes one step for each frame of the display while something moves and the item is
// visible. In boringMode it draws one still picture. Main thread, except for updatePaintNode.
class Backdrop : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each background draws its own.")

public:
    // Returns seconds. It may run at any rate, or not at all.
    using Clock = std::function<double()>;

    explicit Backdrop(QQuickItem *parent = nullptr);

    // Replaces the machine's clock, for a picture of a chosen moment. now() begins again at 0.
    void setClock(Clock clock);
    // Returns whether it takes a step for each frame of the display.
    [[nodiscard]] bool isMoving() const;

protected:
    // Takes one step. Returns false when nothing will change until wake().
    virtual bool advance() = 0;
    // Goes back to the still picture of boringMode.
    virtual void beStill() = 0;

    void wake();
    // Returns the seconds since the item was created or got its clock.
    [[nodiscard]] double now() const { return m_clock() - m_start; }
    // Returns the length of a device pixel, in points.
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
