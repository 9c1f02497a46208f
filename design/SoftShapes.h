#pragma once

#include <cstdint>

#include <QtCore/QPointF>
#include <QtQuick/QSGGeometryNode>
#include <QtQuick/QSGMaterial>

#include "design/KineticGrid.h"

class QQuickWindow;

namespace larkspan {

// Paints shapes whose edges are worked out for each pixel, so that they are smooth and crisp at every scale.
class SoftShapeMaterial : public QSGMaterial
{
public:
    SoftShapeMaterial();

    [[nodiscard]] QSGMaterialType *type() const override;
    [[nodiscard]] QSGMaterialShader *createShader(QSGRendererInterface::RenderMode) const override;
    [[nodiscard]] int compare(const QSGMaterial *other) const override;

    float box = 0.0f; // half the side of the square that shapes are drawn around, in widths of their soft edge
};

// Draws discs, lines, rings, glows and rounded squares in one draw call, each above the ones before. Shapes are added
// between begin() and end(). Memory grows with the largest drawing and is kept. Render thread.
class SoftShapeNode : public QSGGeometryNode
{
public:
    SoftShapeNode();

    // pixel: the length of a device pixel in the item's coordinates.
    // shapes: the greatest number of them. squareSide: of all squares, in a drawing that has nothing but squares.
    void begin(int shapes, double pixel, double squareSide = 0.0, double squareRadius = 0.0);
    void addDisc(QPointF centre, double radius, const RGBA &color);
    void addSegment(QPointF from, QPointF to, double width, const RGBA &color);
    void addRing(QPointF centre, double radius, double width, const RGBA &color);
    // Fades from color at innerRadius to nothing at outerRadius.
    void addGlow(QPointF centre, double innerRadius, double outerRadius, const RGBA &color);
    void addSquare(QPointF centre, const RGBA &color);
    void end();

private:
    struct Vertex
    {
        float x;
        float y;
        float u;
        float v;
        float ring;
        float edge;
        std::uint8_t color[4]; // premultiplied
    };
    static const QSGGeometry::AttributeSet &attributes();

    struct Shape
    {
        float ring;
        float edge;
        float perPoint; // widths of the soft edge in a point
        std::uint8_t color[4];
    };
    [[nodiscard]] Shape stroked(double ring, double halfWidth, const RGBA &color) const;
    void addQuad(QPointF centre, double reach, const Shape &shape);
    void reserve(int shapes);

    QSGGeometry m_shapes;
    SoftShapeMaterial m_paint;
    Vertex *m_next = nullptr;
    int m_capacity = 0; // shapes
    int m_corners = 0;  // that the last drawing wrote
    double m_pixel = 1.0;
    double m_squareHalf = 0.0;
    double m_squareRadius = 0.0;
};

// Returns whether shapes can be drawn in this window. Qt Quick without a graphics interface can't.
[[nodiscard]] bool canDrawSoftShapes(const QQuickWindow &window);

} // namespace larkspan
