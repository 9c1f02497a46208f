#include "design/LKSpotlight.h"

#include "design/SurfaceMath.h"

namespace larkspan {

void LKSpotlight::setCard(QSizeF card)
{
    if (m_card != card) {
        m_card = card;
        Q_EMIT changed();
    }
}

void LKSpotlight::setPointer(std::optional<QPointF> pointer)
{
    if (m_pointer != pointer) {
        m_pointer = pointer;
        Q_EMIT changed();
    }
}

double LKSpotlight::nx() const
{
    return spotlightCentre(m_pointer, m_card).x();
}

double LKSpotlight::ny() const
{
    return spotlightCentre(m_pointer, m_card).y();
}

double LKSpotlight::radius() const
{
    return spotlightRadius(m_card);
}

QColor LKSpotlight::colorAt(QColor accent, QColor info, double nx)
{
    return mixed(accent, info, nx);
}

} // namespace larkspan
