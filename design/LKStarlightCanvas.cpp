#include "design/LKStarlightCanvas.h"

#include "design/LK.h"
#include "design/SoftShapes.h"

namespace larkspan {

LKStarlightCanvas::LKStarlightCanvas(QQuickItem *parent) : Backdrop(parent) {}

QSGNode *LKStarlightCanvas::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    auto *node = static_cast<SoftShapeNode *>(old);
    if (!canDraw()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = new SoftShapeNode;
    }

    const starlight::Lattice lattice = starlight::Lattice::filling(width(), height());
    m_field.moveTo(LK::instance().boringMode() ? starlight::stillMoment : now(), lattice);
    const starlight::Colors &colors = starlight::Colors::of(LK::instance().theme());
    node->begin(lattice.cellCount(), pixel(), starlight::dotSize, starlight::dotRadius);
    auto cell = m_field.cells().begin();
    for (int row = 0; row < lattice.rows; ++row) {
        for (int column = 0; column < lattice.columns; ++column, ++cell) {
            if (const double opacity = m_field.opacity(*cell); opacity > 0.0) {
                node->addSquare(QPointF(column + 0.5, row + 0.5) * starlight::cellSize,
                                (cell->isAccent ? colors.accent : colors.plain).at(opacity));
            }
        }
    }
    node->end();
    return node;
}

} // namespace larkspan
