#include "design/Corners.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace larkspan::corners {

namespace {

constexpr int pointsPerCorner = 10;

// The whole corner, of radius 1.
constexpr Curve continuous{{{reach, 0},
                            {1.08849296, 0},
                            {0.86840694, 0},
                            {0.63149379, 0.07491139},
                            {0.37282383, 0.16905956},
                            {0.16905956, 0.37282383},
                            {0.07491139, 0.63149379},
                            {0, 0.86840694},
                            {0, 1.08849296},
                            {0, reach}}};
// The direction at which the first of its three curves ends, in degrees from the edge; the last begins at the mirrored
// one. The quarter circle is divided at the same directions.
constexpr double turn = 18.77;

Curve quarterCircle()
{
    constexpr double degree = std::numbers::pi / 180;
    const auto at = [](double angle) { return QPointF(1 - std::sin(angle), 1 - std::cos(angle)); };
    const auto along = [](double angle) { return QPointF(-std::cos(angle), std::sin(angle)); };
    Curve curve;
    std::size_t next = 0;
    curve[next++] = at(0);
    double from = 0;
    for (const double to : {turn * degree, (90 - turn) * degree, 90 * degree}) {
        const double handle = 4.0 / 3.0 * std::tan((to - from) / 4);
        curve[next++] = at(from) + handle * along(from);
        curve[next++] = at(to) - handle * along(to);
        curve[next++] = at(to);
        from = to;
    }
    return curve;
}

// A point of a cubic curve, and the curve's derivative there.
struct CurvePoint
{
    QPointF place;
    QPointF along;
};

CurvePoint on(const QPointF *p, double t)
{
    const double s = 1 - t;
    return {s * s * s * p[0] + 3 * s * s * t * p[1] + 3 * s * t * t * p[2] + t * t * t * p[3],
            s * s * (p[1] - p[0]) + 2 * s * t * (p[2] - p[1]) + t * t * (p[3] - p[2])};
}

double room(QSizeF rectangle)
{
    return std::max(0.0, std::min(rectangle.width(), rectangle.height()) / 2);
}

// Returns a vector of the upper left corner turned for another one, by a quarter anticlockwise for each.
QPointF turned(QPointF vector, int corner)
{
    for (; corner > 0; --corner) {
        vector = {vector.y(), -vector.x()};
    }
    return vector;
}

QPointF cornerPlace(QSizeF rectangle, int corner)
{
    return {corner == 2 || corner == 3 ? rectangle.width() : 0, corner == 1 || corner == 2 ? rectangle.height() : 0};
}

} // namespace

Curve curve(double radius, double room)
{
    static const Curve circular = quarterCircle();
    const double share = radius > 0 ? std::clamp((room / radius - 1) / (reach - 1), 0.0, 1.0) : 0;
    Curve curve;
    for (std::size_t i = 0; i < curve.size(); ++i) {
        curve[i] = radius * ((1 - share) * circular[i] + share * continuous[i]);
    }
    return curve;
}

QPainterPath path(const QRectF &rectangle, double radius)
{
    QPainterPath path;
    if (radius <= 0 || rectangle.isEmpty()) {
        path.addRect(rectangle);
        return path;
    }
    const double space = room(rectangle.size());
    const Curve one = curve(std::min(radius, space), space);
    for (int corner = 0; corner < 4; ++corner) {
        const auto at = [&](std::size_t i) {
            return rectangle.topLeft() + cornerPlace(rectangle.size(), corner) + turned(one[i], corner);
        };
        if (corner == 0) {
            path.moveTo(at(0));
        } else {
            path.lineTo(at(0));
        }
        for (const std::size_t i : {1U, 4U, 7U}) {
            path.cubicTo(at(i), at(i + 1), at(i + 2));
        }
    }
    path.closeSubpath();
    return path;
}

std::vector<OutlinePoint> outline(QSizeF rectangle, double radius, double pixelsPerPoint)
{
    std::vector<OutlinePoint> one; // the upper left corner
    const double space = room(rectangle);
    if (const double fitting = std::min(radius, space); fitting > 0) {
        const Curve bend = curve(fitting, space);
        const double pixels = fitting * pixelsPerPoint;
        const auto few = std::min(pointsPerCorner, static_cast<int>(std::ceil(std::sqrt(pixels / 3))));
        const auto many = std::min(2 * pointsPerCorner, static_cast<int>(std::ceil(std::sqrt(pixels))));
        for (const auto &[first, steps] : {std::pair(0U, few), {3U, many}, {6U, few}}) {
            for (int step = 0; step < steps + (first == 6U ? 1 : 0); ++step) {
                const auto [place, along] = on(&bend[first], static_cast<double>(step) / steps);
                one.push_back({place, QPointF(-along.y(), along.x()) / std::hypot(along.x(), along.y())});
            }
        }
    } else {
        one.push_back({{}, {-1, -1}});
    }
    std::vector<OutlinePoint> points;
    points.reserve(4 * one.size());
    for (int corner = 0; corner < 4; ++corner) {
        for (const OutlinePoint &point : one) {
            points.push_back(
                {cornerPlace(rectangle, corner) + turned(point.place, corner), turned(point.outward, corner)});
        }
    }
    return points;
}

QPointF movedIn(const OutlinePoint &point, double distance, QSizeF rectangle, double radius)
{
    const double space = room(rectangle);
    const QPointF middle(rectangle.width() / 2, rectangle.height() / 2);
    const double inwards = std::min(distance, space);
    if (inwards < std::min(radius, space) || inwards <= 0 || radius <= 0) {
        return point.place - inwards * point.outward;
    }
    // The corner is used up: what is left is a rectangle.
    return {point.place.x() < middle.x() ? inwards : rectangle.width() - inwards,
            point.place.y() < middle.y() ? inwards : rectangle.height() - inwards};
}

} // namespace larkspan::corners
