#pragma once

#include <vector>

#include "design/Backdrop.h"
#include "design/KineticGrid.h"

namespace larkspan {

class SoftShapeNode;

// Draws the kinetic grid, over the items behind it: the lattice of dots in one call, mesh and rings in another.
class LKKineticGridCanvas : public larkspan::Backdrop // qmllint finds it only by its whole name
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LKKineticGridCanvas(QQuickItem *parent = nullptr);

    // In the item's coordinates. Nothing happens in boringMode.
    Q_INVOKABLE void movePointer(QPointF to);
    Q_INVOKABLE void pointerLeft();
    Q_INVOKABLE void click(QPointF at);

    [[nodiscard]] const KineticGrid &grid() const { return m_grid; }

protected:
    bool advance() override;
    void beStill() override { m_grid.reset(); }
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    class Nodes;

    void drawDots(SoftShapeNode &node) const;
    void drawMesh(SoftShapeNode &node);

    KineticGrid m_grid;
    std::vector<GridPoint> m_points; // of the frame that is drawn, row by row; kept for its memory
};

} // namespace larkspan
