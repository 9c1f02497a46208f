#include "design/LKDropShadow.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <QtCore/QList>
#include <QtGui/QPainter>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>
#include <QtQuick/QSGTexture>

#include "design/Corners.h"

namespace larkspan {

namespace {

// The blur's radius is its standard deviation; beyond three of them nothing is left to see.
constexpr double reach = 3.0;
// A blur this wide, in dots, is smooth however much it is enlarged: large shadows are drawn small.
constexpr double widestBlur = 6.0;

QList<float> weightsOf(double deviation)
{
    const int width = static_cast<int>(std::ceil(reach * deviation));
    QList<float> weights;
    float sum = 0;
    for (int x = -width; x <= width; ++x) {
        weights.push_back(static_cast<float>(std::exp(-x * x / (2 * deviation * deviation))));
        sum += weights.back();
    }
    for (float &weight : weights) {
        weight /= sum;
    }
    return weights;
}

// Blurs along the rows and turns the picture on its side: twice is both ways. Grey in, grey out.
QImage blurredRowsTurned(const QImage &picture, const QList<float> &weights)
{
    QImage turned(picture.height(), picture.width(), QImage::Format_Grayscale8);
    const int half = static_cast<int>(weights.size()) / 2;
    for (int y = 0; y < picture.height(); ++y) {
        const uchar *row = picture.constScanLine(y);
        for (int x = 0; x < picture.width(); ++x) {
            float sum = 0.5F;
            for (int i = std::max(0, x - half); i <= std::min(picture.width() - 1, x + half); ++i) {
                sum += static_cast<float>(row[i]) * weights[i - x + half];
            }
            turned.scanLine(x)[y] = static_cast<uchar>(sum);
        }
    }
    return turned;
}

// size: of what casts the shadow; margin: room for the blur on every side; both in points.
QImage shadowPicture(const LKShadow &shadow, double cornerRadius, QSizeF size, double margin, double scale)
{
    const QSize dots = (size.grownBy(QMarginsF(margin, margin, margin, margin)) * scale).toSize();
    QImage mask(dots, QImage::Format_Grayscale8);
    mask.fill(Qt::black);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawPath(corners::path(QRectF(QPointF(margin, margin), size), cornerRadius));
    painter.end();
    if (shadow.radius > 0) {
        const QList<float> weights = weightsOf(shadow.radius * scale);
        mask = blurredRowsTurned(blurredRowsTurned(mask, weights), weights);
    }
    QImage colored(dots, QImage::Format_ARGB32_Premultiplied);
    colored.fill(shadow.color);
    mask.reinterpretAsFormat(QImage::Format_Alpha8);
    QPainter tint(&colored);
    tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tint.drawImage(0, 0, mask);
    tint.end();
    return colored;
}

// A stretch of the picture, in dots, and where it is drawn, in points from the picture's edge.
struct Stretch
{
    double from = 0;
    double dots = 0;
    double at = 0;
    double points = 0;
};

// Divides one axis of the shadow, which is length points long with its blur, into stretches: both ends as they are,
// and two dots of the even middle, stretched to fill what is left. end: points that a corner and the blur take.
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
    const double margin = std::ceil(reach * m_shadow.radius);
    const double scale = m_shadow.radius > 0
                             ? std::min(window()->effectiveDevicePixelRatio(), widestBlur / m_shadow.radius)
                             : window()->effectiveDevicePixelRatio();
    const double end = 2 * margin + corners::reach * m_cornerRadius;
    const auto columns = stretches(width() + 2 * margin, end, scale);
    const auto rows = stretches(height() + 2 * margin, end, scale);
    const QSizeF pictured(columns.size() == 1 ? width() : dotsOf(columns) / scale - 2 * margin,
                          rows.size() == 1 ? height() : dotsOf(rows) / scale - 2 * margin);
    const QImage picture = shadowPicture(m_shadow, m_cornerRadius, pictured, margin, scale);

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
