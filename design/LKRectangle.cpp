#include "design/LKRectangle.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtQuick/private/qquickrectangle_p_p.h>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGGeometryNode>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGVertexColorMaterial>

#include "design/Corners.h"
#include "design/SoftShapes.h"

namespace larkspan {

namespace {

struct Look
{
    QSizeF size;
    double radius;
    double lineWidth;
    QColor fill;
    QColor line;
};

struct Premultiplied
{
    explicit Premultiplied(const QColor &color)
    {
        const float alpha = color.alphaF();
        const auto channel = [](float value) { return static_cast<uchar>(std::lrint(value * 255)); };
        red = channel(color.redF() * alpha);
        green = channel(color.greenF() * alpha);
        blue = channel(color.blueF() * alpha);
        opacity = channel(alpha);
    }

    uchar red;
    uchar green;
    uchar blue;
    uchar opacity;
};

// A closed line along the shape's edge, moved inwards by so many points.
struct Line
{
    double inwards;
    QColor color;
};

// Returns the lines of a shape from the outermost to the innermost. pixel: the length of a device pixel in points.
std::vector<Line> linesOf(const Look &look, double pixel)
{
    // Half a pixel to each side of an edge, so that an edge between two pixels is smooth.
    const double soft = pixel / 2;
    const double half = look.lineWidth / 2;
    if (half <= 0) {
        return {{-soft, Qt::transparent}, {soft, look.fill}};
    }
    return {{-soft, Qt::transparent},
            {std::min(soft, half), look.line},
            {std::max(look.lineWidth - soft, half), look.line},
            {look.lineWidth + soft, look.fill}};
}

// Lines around the shape, each inside the one before, between which colours blend; the innermost is filled.
class ShapeNode : public QSGGeometryNode
{
public:
    ShapeNode() : m_shape(QSGGeometry::defaultAttributes_ColoredPoint2D(), 0, 0, QSGGeometry::UnsignedShortType)
    {
        m_shape.setDrawingMode(QSGGeometry::DrawTriangles);
        m_paint.setFlag(QSGMaterial::Blending);
        setGeometry(&m_shape);
        setMaterial(&m_paint);
    }

    // pixel: the length of a device pixel in points.
    void draw(const Look &look, double pixel)
    {
        const std::vector<Line> lines = linesOf(look, pixel);
        const std::vector<corners::OutlinePoint> outline = corners::outline(look.size, look.radius, 1 / pixel);
        const auto around = static_cast<int>(outline.size());
        const auto rings = static_cast<int>(lines.size());
        const bool isFilled = look.fill.alpha() > 0;
        reserve(around * rings, 6 * around * (rings - 1) + (isFilled ? 3 * (around - 2) : 0));

        auto *vertex = m_shape.vertexDataAsColoredPoint2D();
        for (const Line &line : lines) {
            const Premultiplied color(line.color);
            for (const corners::OutlinePoint &point : outline) {
                const QPointF place = corners::movedIn(point, line.inwards, look.size, look.radius);
                (vertex++)->set(static_cast<float>(place.x()), static_cast<float>(place.y()), color.red, color.green,
                                color.blue, color.opacity);
            }
        }
        putTriangles(around, rings, isFilled);
        markDirty(DirtyGeometry);
    }

private:
    // Joins each line of so many points with the next one, and fills the innermost.
    void putTriangles(int around, int rings, bool isFilled)
    {
        quint16 *index = m_shape.indexDataAsUShort();
        const auto put = [&index, around](int ring, int point) {
            *index++ = static_cast<quint16>(ring * around + point % around);
        };
        for (int ring = 0; ring + 1 < rings; ++ring) {
            for (int point = 0; point < around; ++point) {
                put(ring, point);
                put(ring + 1, point);
                put(ring, point + 1);
                put(ring, point + 1);
                put(ring + 1, point);
                put(ring + 1, point + 1);
            }
        }
        for (int point = 1; isFilled && point + 1 < around; ++point) {
            put(rings - 1, 0);
            put(rings - 1, point);
            put(rings - 1, point + 1);
        }
    }

    void reserve(int vertices, int indices)
    {
        if (m_shape.vertexCount() != vertices || m_shape.indexCount() != indices) {
            m_shape.allocate(vertices, indices);
        }
    }

    QSGGeometry m_shape;
    QSGVertexColorMaterial m_paint;
};

QPolygonF polygon(const Look &look, double inwards, double pixelsPerPoint)
{
    QPolygonF polygon;
    for (const corners::OutlinePoint &point : corners::outline(look.size, look.radius, pixelsPerPoint)) {
        polygon.push_back(corners::movedIn(point, inwards, look.size, look.radius));
    }
    return polygon;
}

// The same for a window without a graphics interface.
QImage picture(const Look &look, double pixelsPerPoint)
{
    QImage image((look.size * pixelsPerPoint).toSize().expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(image.width() / look.size.width(), image.height() / look.size.height());
    painter.setBrush(look.lineWidth > 0 ? look.line : look.fill);
    painter.drawPolygon(polygon(look, 0, pixelsPerPoint));
    if (look.lineWidth > 0) {
        painter.setCompositionMode(QPainter::CompositionMode_Source); // the fill is beside its border, not under it
        painter.setBrush(look.fill);
        painter.drawPolygon(polygon(look, look.lineWidth, pixelsPerPoint));
    }
    return image;
}

// 0 for none.
double lineWidth(const QQuickPen *pen, QSizeF size)
{
    if (!pen || !pen->isValid() || pen->color().alpha() == 0) {
        return 0;
    }
    const double width = pen->pixelAligned() ? std::round(pen->width()) : pen->width();
    return std::min({width, size.width() / 2, size.height() / 2});
}

} // namespace

LKRectangle::LKRectangle(QQuickItem *parent) : QQuickRectangle(parent) {}

void LKRectangle::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickRectangle::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
}

QSGNode *LKRectangle::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    // border() would make one, and this may be the renderer's thread.
    const QQuickPen *pen = static_cast<QQuickRectanglePrivate *>(QQuickItemPrivate::get(this))->pen;
    const Look look{size(), radius(), lineWidth(pen, size()), color(), pen ? pen->color() : Qt::transparent};
    if (size().isEmpty() || (look.fill.alpha() == 0 && look.lineWidth == 0)) {
        delete old;
        return nullptr;
    }
    const double pixelsPerPoint = window()->effectiveDevicePixelRatio();
    if (canDrawSoftShapes(*window())) {
        auto *node = static_cast<ShapeNode *>(old);
        if (!node) {
            node = new ShapeNode;
        }
        node->draw(look, 1 / pixelsPerPoint);
        return node;
    }
    auto *node = static_cast<QSGImageNode *>(old);
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window()->createTextureFromImage(picture(look, pixelsPerPoint)));
    node->setRect(boundingRect());
    return node;
}

} // namespace larkspan
