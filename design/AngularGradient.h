#pragma once

#include <QtCore/QList>
#include <QtGui/QBrush>
#include <QtGui/QColor>

namespace larkspan {

// Colours that turn around a point, evenly spaced, beginning to its right. Two or more.
inline QConicalGradient angularGradient(QPointF centre, const QList<QColor> &stops)
{
    QConicalGradient gradient(centre, 0);
    for (qsizetype i = 0; i < stops.size(); ++i) {
        gradient.setColorAt(static_cast<double>(i) / static_cast<double>(stops.size() - 1), stops[i]);
    }
    return gradient;
}

} // namespace larkspan
