#pragma once

#include <chrono>
#include <optional>

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QColor>

namespace larkspan {

// The arithmetic of the surfaces that move. Lengths in points.

// Where the light of a card lies, in parts of its width and height, 0 to 1 each: under the pointer, which is in the
// card's coordinates, or in the middle without one.
[[nodiscard]] QPointF spotlightCentre(std::optional<QPointF> pointer, QSizeF card);

// How far the light of a card reaches.
[[nodiscard]] double spotlightRadius(QSizeF card);

// From one colour (share 0) to another (share 1), component by component, without transparency.
[[nodiscard]] QColor mixed(const QColor &from, const QColor &to, double share);

// "12.3s", from a minute on "2m 3.4s". A time below 0 counts as 0.
[[nodiscard]] QString elapsedText(std::chrono::duration<double> elapsed);

} // namespace larkspan
