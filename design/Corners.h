#pragma once

#include <array>
#include <vector>

#include <QtCore/QPointF>
#include <QtGui/QPainterPath>

// The corner of every rounded shape: a continuous one, which begins to bend before it turns, so that no straight edge
// ends at a visible point. Fills, borders, shadows, clips and the icon all take it from here; corners.glsl is the same
// curve for the shaders. Lengths in points.
namespace larkspan::corners {

// A corner's share of an edge that has room for it, in radii. With less room it comes closer to an arc, and with
// no more than its radius, as in a pill or a circle, it is one.
inline constexpr double reach = 1.528665;

// One corner as three cubic curves, from the one edge to the other: a point's distances from the other edge and from
// this one. room: of each edge, at least radius.
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

// The outline of a rectangle at the origin as a polygon that looks smooth at so many pixels to a point.
[[nodiscard]] std::vector<OutlinePoint> outline(QSizeF rectangle, double radius, double pixelsPerPoint);
// That outline moved inwards everywhere by a distance; what would cross itself meets in one point instead.
[[nodiscard]] QPointF movedIn(const OutlinePoint &point, double distance, QSizeF rectangle, double radius);

} // namespace larkspan::corners
