#include "design/LKGradientBorder.h"

#include <QtGui/QPainter>

#include "design/AngularGradient.h"
#include "design/Corners.h"
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
    const QConicalGradient gradient = angularGradient(boundingRect().center(), LK::instance().palette().aiGradient());
    const double inset = m_lineWidth / 2;
    painter->setPen(QPen(gradient, m_lineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(corners::path(boundingRect().adjusted(inset, inset, -inset, -inset), m_cornerRadius - inset));
}

} // namespace larkspan
