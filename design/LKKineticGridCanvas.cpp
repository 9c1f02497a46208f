#include "design/LKKineticGridCanvas.h"

#include <algorithm>

#include "design/SoftShapes.h"

namespace larkspan {

namespace {

// Spare room for shapes that come and go, so that pointing and clicking allocate nothing.
constexpr std::size_t spareShapes = 128;

// Number of dots of the lattice within this length, in points.
int dotsAlong(double length)
{
    return std::max(0, static_cast<int>(std::ceil(length / KineticGrid::dotSpacing - 0.5)));
}

void addSegment(SoftShapeNode &node, const GridPoint &a, const GridPoint &b, const GridColors &colors)
{
    const SegmentLook look = SegmentLook::between(a.intensity, b.intensity, colors);
    node.addSegment({a.x, a.y}, {b.x, b.y}, look.width, look.color);
}

void addPoint(SoftShapeNode &node, const GridPoint &point, const GridColors &colors)
{
    const NodeLook look = NodeLook::of(point.intensity, colors);
    const QPointF centre(point.x, point.y);
    if (look.glowRadius > 0.0) {
        node.addGlow(centre, look.radius / 2.0, look.glowRadius, colors.glow.at(look.glowOpacity));
    }
    node.addDisc(centre, look.radius, look.color);
}

void addRipple(SoftShapeNode &node, const Ripple &ripple, double time, const GridColors &colors)
{
    if (const double strength = ripple.strength(time); strength > 0.0) {
        node.addRing({ripple.x, ripple.y}, ripple.radius(time), KineticGrid::ringWidth,
                     colors.ripple.at(KineticGrid::ringOpacity * strength));
    }
}

} // namespace

class LKKineticGridCanvas::Nodes : public QSGNode
{
public:
    struct DotsState
    {
        QSizeF size;
        LK::Theme theme = LK::Theme::Dark;
        double pixel = 0.0;
        friend bool operator==(const DotsState &, const DotsState &) = default;
    };

    Nodes()
    {
        for (SoftShapeNode *node : {&dots, &mesh}) {
            node->setFlag(OwnedByParent, false);
            appendChildNode(node);
        }
    }

    SoftShapeNode dots;
    SoftShapeNode mesh;
    DotsState drawnDots; // they are drawn anew only when one of these changes
};

LKKineticGridCanvas::LKKineticGridCanvas(QQuickItem *parent) : Backdrop(parent) {}

void LKKineticGridCanvas::movePointer(QPointF to)
{
    if (!LK::instance().boringMode()) {
        m_grid.movePointer(to);
        wake();
    }
}

void LKKineticGridCanvas::pointerLeft()
{
    m_grid.pointerLeft();
    wake();
}

void LKKineticGridCanvas::click(QPointF at)
{
    if (!LK::instance().boringMode()) {
        m_grid.addRipple(at, now());
        wake();
    }
}

bool LKKineticGridCanvas::advance()
{
    m_grid.advance(now());
    return !m_grid.isAtRest();
}

QSGNode *LKKineticGridCanvas::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    auto *nodes = static_cast<Nodes *>(old);
    if (!canDraw()) {
        delete nodes;
        return nullptr;
    }
    if (!nodes) {
        nodes = new Nodes;
    }
    const Nodes::DotsState dots{size(), LK::instance().theme(), pixel()};
    if (nodes->drawnDots != dots) {
        drawDots(nodes->dots);
        nodes->drawnDots = dots;
    }
    drawMesh(nodes->mesh);
    return nodes;
}

void LKKineticGridCanvas::drawDots(SoftShapeNode &node) const
{
    const GridColors &colors = GridColors::of(LK::instance().theme());
    const RGBA color = colors.lineBase.at(colors.dotOpacity);
    const int columns = dotsAlong(width());
    const int rows = dotsAlong(height());
    node.begin(columns * rows, pixel());
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            node.addDisc(QPointF(column + 0.5, row + 0.5) * KineticGrid::dotSpacing, KineticGrid::dotDiameter / 2.0,
                         color);
        }
    }
    node.end();
}

void LKKineticGridCanvas::drawMesh(SoftShapeNode &node)
{
    const GridColors &colors = GridColors::of(LK::instance().theme());
    const GridMesh mesh = GridMesh::filling(width(), height());
    const double time = now();
    m_points.resize(static_cast<std::size_t>(mesh.pointCount()));
    const auto pointsInRow = static_cast<std::size_t>(mesh.columns) + 1;
    const auto pointAt = [&](int column, int row) -> GridPoint & {
        return m_points[static_cast<std::size_t>(row) * pointsInRow + static_cast<std::size_t>(column)];
    };
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column <= mesh.columns; ++column) {
            pointAt(column, row) = m_grid.warp(mesh, column, row, time);
        }
    }

    const int segments = mesh.columns * (mesh.rows + 1) + mesh.rows * (mesh.columns + 1);
    const auto glows = static_cast<std::size_t>(
        std::ranges::count_if(m_points, [](const GridPoint &point) { return NodeLook::glows(point.intensity); }));
    const std::size_t spare = (glows + m_grid.ripples().size()) / spareShapes * spareShapes + spareShapes;
    node.begin(segments + mesh.pointCount() + static_cast<int>(spare), pixel());
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column < mesh.columns; ++column) {
            addSegment(node, pointAt(column, row), pointAt(column + 1, row), colors);
        }
    }
    for (int column = 0; column <= mesh.columns; ++column) {
        for (int row = 0; row < mesh.rows; ++row) {
            addSegment(node, pointAt(column, row), pointAt(column, row + 1), colors);
        }
    }
    for (const GridPoint &point : m_points) {
        addPoint(node, point, colors);
    }
    for (const Ripple &ripple : m_grid.ripples()) {
        addRipple(node, ripple, time, colors);
    }
    node.end();
}

} // namespace larkspan
