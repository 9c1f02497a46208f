#include "shell/launcher/ToolTileSurface.h"

#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>

#include "design/Corners.h"

namespace larkspan {

ToolTileSurface::ToolTileSurface(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    connect(this, &ToolTileSurface::changed, this, [this] { update(); });
}

void ToolTileSurface::paint(QPainter *painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF area = boundingRect();
    QLinearGradient fill(area.topLeft(), area.bottomRight());
    fill.setColorAt(0, m_from);
    fill.setColorAt(1, m_to);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawPath(corners::path(area, m_cornerRadius));

    constexpr double halfEdge = 0.5;
    painter->setPen(QPen(QColor::fromRgbF(1, 1, 1, 0.1f), 1.0));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(
        corners::path(area.adjusted(halfEdge, halfEdge, -halfEdge, -halfEdge), m_cornerRadius - halfEdge));
}

} // namespace larkspan
