#pragma once

#include <QtCore/QRectF>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QPainterPath>

namespace larkspan {

// The one blur of the drawn shapes: a Gaussian curve, cut off where nothing is left to see.

// From the edge of a shape to the end of its blur, in standard deviations.
inline constexpr double blurReach = 3.0;

// Returns the scale, in pixels per point, at which to draw a blur of this deviation, in points, for a display of scale
// full. A wide blur is smooth however much it is enlarged, so it is drawn small.
[[nodiscard]] double blurScale(double deviation, double full);

// Returns the image blurred, of the same size and format: one byte a pixel, or four with premultiplied colours.
// deviation: the standard deviation in pixels, not negative. Everything outside the image counts as empty.
[[nodiscard]] QImage blurred(const QImage &image, double deviation);

// Returns a picture of the area, in which the shape is filled with the colour and blurred. area, shape and deviation
// are in points; scale: pixels per point.
[[nodiscard]] QImage blurredShape(const QPainterPath &shape, const QColor &color, const QRectF &area, double deviation,
                                  double scale);

} // namespace larkspan
