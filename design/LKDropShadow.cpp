#include "design/LKDropShadow.h"

#include <cmath>
#include <vector>

#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGTexture>

#include "design/Blur.h"
#include "design/Corners.h"

namespace larkspan {

namespace {

// A stretch of the picture, in dots, and where it is drawn, in points from the picture's edge.
struct Stretch
{
    double from = 0;
    double dots = 0;
    double at = 0;
    double points = 0;
};

// Divides one axis of the shadow into stretches: both ends at their own size, and two dots of the uniform middle, which
// are stretched to fill the rest. length: of the axis with its blur, in points. end: of a corner with its blur.
std::vector<Stretch> stretches(double length, double end, double scale)
{
    const double endDots = std::ceil(end * scale);
    constexpr double middleDots = 2;
    if (length * scale <= 2 * endDots + middleDots) {
        return {{0, std::round(length * scale), 0, length}};
    }
    const double endPoints = endDots / scale;
    return {{0, endDots, 0, endPoints},
            {endDots, middleDots, endPoints, length - 2 * endPoints},
            {endDots + middleDots, endDots, length - endPoints, endPoints}};
}

double dotsOf(const std::vector<Stretch> &axis)
{
    return axis.back().from + axis.back().dots;
}

} // namespace

LKDropShadow::LKDropShadow(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void LKDropShadow::setShadow(const LKShadow &shadow)
{
    if (m_shadow != shadow) {
        m_shadow = shadow;
        update();
        Q_EMIT shadowChanged();
    }
}

void LKDropShadow::setCornerRadius(double radius)
{
    if (m_cornerRadius != radius) {
        m_cornerRadius = radius;
        update();
        Q_EMIT cornerRadiusChanged();
    }
}

void LKDropShadow::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickItem::geometryChange(now, before);
    update();
}

void LKDropShadow::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, data);
}

QSGNode *LKDropShadow::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    delete old;
    if (width() <= 0 || height() <= 0 || m_shadow.color.alpha() == 0) {
        return nullptr;
    }
    const double margin = std::ceil(blurReach * m_shadow.radius);
    const double scale = blurScale(m_shadow.radius, window()->effectiveDevicePixelRatio());
    const double end = 2 * margin + corners::reach * m_cornerRadius;
    const auto columns = stretches(width() + 2 * margin, end, scale);
    const auto rows = stretches(height() + 2 * margin, end, scale);
    const QSizeF pictured(columns.size() == 1 ? width() : dotsOf(columns) / scale - 2 * margin,
                          rows.size() == 1 ? height() : dotsOf(rows) / scale - 2 * margin);
    // The blur's radius is its standard deviation.
    const QImage picture =
        blurredShape(corners::path(QRectF(QPointF(margin, margin), pictured), m_cornerRadius), m_shadow.color,
                     QRectF(QPointF(), pictured + QSizeF(2 * margin, 2 * margin)), m_shadow.radius, scale);

    QSGTexture *texture = window()->createTextureFromImage(picture, QQuickWindow::TextureHasAlphaChannel);
    auto *shadow = new QSGNode;
    for (const Stretch &row : rows) {
        for (const Stretch &column : columns) {
            QSGImageNode *part = window()->createImageNode();
            part->setTexture(texture);
            part->setOwnsTexture(shadow->childCount() == 0);
            part->setFiltering(QSGTexture::Linear);
            part->setSourceRect(column.from, row.from, column.dots, row.dots);
            part->setRect(m_shadow.x - margin + column.at, m_shadow.y - margin + row.at, column.points, row.points);
            shadow->appendChildNode(part);
        }
    }
    return shadow;
}

} // namespace larkspan
