#pragma once

#include <chrono>
#include <optional>

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>

namespace larkspan {

// Calculations for the surfaces that move. Lengths in points.

// Returns the centre of a card's light, in parts of its width and height, 0 to 1 each: under the pointer, given in the
// card's coordinates, or in the middle without one.
[[nodiscard]] QPointF spotlightCentre(std::optional<QPointF> pointer, QSizeF card);

// Returns the reach of a card's light.
[[nodiscard]] double spotlightRadius(QSizeF card);

// Returns a mixture of two opaque colours, component by component. share: 0 for the first, 1 for the second.
[[nodiscard]] QColor mixed(const QColor &from, const QColor &to, double share);

// Returns "12.3s", from a minute on "2m 3.4s". A time below 0 counts as 0.
[[nodiscard]] QString elapsedText(std::chrono::duration<double> elapsed);

} // namespace larkspan
