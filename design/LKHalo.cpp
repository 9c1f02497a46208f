#include "design/LKHalo.h"

#include <cmath>

#include <QtGui/QPainter>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGImageNode>

#include "design/AngularGradient.h"
#include "design/Blur.h"
#include "design/Corners.h"
#include "design/LK.h"

namespace larkspan {

namespace {

constexpr double pointsPerPixel = 2.0;

} // namespace

double haloReach(double blur)
{
    return pointsPerPixel * std::ceil(blurReach * blur / pointsPerPixel);
}

QImage haloImage(QSizeF rectangle, double cornerRadius, double blur, const QList<QColor> &gradient)
{
    const double reach = haloReach(blur);
    const QSizeF area = rectangle + QSizeF(2 * reach, 2 * reach);
    QImage sharp((area / pointsPerPixel).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (sharp.isNull()) {
        return {};
    }
    sharp.fill(Qt::transparent);
    QPainter painter(&sharp);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(sharp.width() / area.width(), sharp.height() / area.height());
    painter.translate(area.width() / 2, area.height() / 2);
    painter.setBrush(angularGradient({}, gradient));
    painter.setPen(Qt::NoPen);
    painter.drawPath(
        corners::path(QRectF(QPointF(-rectangle.width() / 2, -rectangle.height() / 2), rectangle), cornerRadius));
    painter.end();

    return blurred(sharp, blur / pointsPerPixel);
}

LKHalo::LKHalo(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(&LK::instance(), &LK::themeChanged, this, &LKHalo::redraw);
}

void LKHalo::setCornerRadius(double radius)
{
    if (m_cornerRadius != radius) {
        m_cornerRadius = radius;
        Q_EMIT cornerRadiusChanged();
        redraw();
    }
}

void LKHalo::setBlur(double blur)
{
    if (m_blur != blur) {
        m_blur = blur;
        Q_EMIT blurChanged();
        redraw();
    }
}

void LKHalo::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        redraw();
    }
}

void LKHalo::redraw()
{
    m_isStale = true;
    update();
}

QSGNode *LKHalo::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGImageNode *>(oldNode);
    if (!m_isStale && node) {
        return node;
    }
    m_isStale = false;
    const QImage image =
        size().isEmpty() ? QImage() : haloImage(size(), m_cornerRadius, m_blur, LK::instance().palette().aiGradient());
    if (image.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    node->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureHasAlphaChannel));
    const double reach = haloReach(m_blur);
    node->setRect(boundingRect().adjusted(-reach, -reach, reach, reach));
    return node;
}

} // namespace larkspan
