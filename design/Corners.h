#pragma once

#include <array>
#include <vector>

#include <QtCore/QPointF>
#include <QtGui/QPainterPath>

// The corner of every rounded shape: a continuous one, which begins to bend before it turns, so that no straight edge
// ends at a visible point. Fills, borders, shadows, clips and the icon all take it from here; corners.glsl is the same
// curve for the shaders. Lengths in points.
namespace larkspan::corners {

// The length that a corner takes of an edge with enough room, in radii. With less room it is closer to an arc; with no
// more than its radius, as in a pill or a circle, it is an arc.
inline constexpr double reach = 1.528665;

// Returns one corner as three cubic curves from one edge to the other. x is a point's distance from the other edge, y
// that from the first one. room: the length of each edge that the corner may take, at least radius.
using Curve = std::array<QPointF, 10>;
[[nodiscard]] Curve curve(double radius, double room);

// A rectangle with such corners; a radius beyond what fits makes a pill.
[[nodiscard]] QPainterPath path(const QRectF &rectangle, double radius);

// A point of a shape's outline, and the direction away from the shape there.
struct OutlinePoint
{
    QPointF place;
    QPointF outward; // of length 1; longer at a sharp corner, so that edges moved along it stay parallel
};

// Returns the outline of a rectangle at the origin, as a polygon that looks smooth at so many pixels to a point.
[[nodiscard]] std::vector<OutlinePoint> outline(QSizeF rectangle, double radius, double pixelsPerPoint);
// Returns a point of that outline moved inwards by a distance. Where the moved outline would cross itself, its points
// meet in one.
[[nodiscard]] QPointF movedIn(const OutlinePoint &point, double distance, QSizeF rectangle, double radius);

} // namespace larkspan::corners
