#include "design/LKGradientBorder.h"

#include <QtGui/QPainter>

#include "design/LK.h"

namespace larkspan {

LKGradientBorder::LKGradientBorder(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(&LK::instance(), &LK::themeChanged, this, [this] { update(); });
}

void LKGradientBorder::setLineWidth(double width)
{
    if (m_lineWidth != width) {
        m_lineWidth = width;
        update();
        Q_EMIT lineWidthChanged();
    }
}

void LKGradientBorder::setCornerRadius(double radius)
{
    if (m_cornerRadius != radius) {
        m_cornerRadius = radius;
        update();
        Q_EMIT cornerRadiusChanged();
    }
}

void LKGradientBorder::paint(QPainter *painter)
{
    QConicalGradient gradient(boundingRect().center(), 0);
    const QList<QColor> stops = LK::instance().palette().aiGradient();
    for (qsizetype i = 0; i < stops.size(); ++i) {
        gradient.setColorAt(static_cast<double>(i) / static_cast<double>(stops.size() - 1), stops[i]);
    }
    const double inset = m_lineWidth / 2;
    const double radius = m_cornerRadius - inset;
    painter->setPen(QPen(gradient, m_lineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(boundingRect().adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace larkspan
