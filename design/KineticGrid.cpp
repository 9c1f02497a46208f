#include "design/KineticGrid.h"

#include <algorithm>
#include <cmath>

namespace larkspan {

namespace {

constexpr double edgeCells = 1.5;    // cells from the window's edge inward over which the effect grows
constexpr double pinchRadius = 60.0; // points around the pointer in which the pull fades, or the mesh would be pinched
constexpr double noPull = 0.01;      // share of the reach in which there is none at all
constexpr double glowFrom = 0.3;     // of a node's share of the active look
constexpr double rippleAmplitude = 18.0;
constexpr double restDistance = 0.01;     // distance to the pointer at which following it ends, in points
constexpr std::size_t usualRipples = 128; // more than are alive at a hundred clicks a second

double smoothstep(double t)
{
    return t * t * (3.0 - 2.0 * t);
}

// 0 on the outer edge and 1 from two cells inward.
double edgeFactor(int index, int count)
{
    return std::min({1.0, index / edgeCells, (count - 1 - index) / edgeCells});
}

} // namespace

RGBA RGBA::mixed(const RGBA &from, const RGBA &to, double share)
{
    return {std::lerp(from.r, to.r, share), std::lerp(from.g, to.g, share), std::lerp(from.b, to.b, share),
            std::lerp(from.a, to.a, share)};
}

const GridColors &GridColors::of(LK::Theme theme)
{
    static const GridColors dark{
        .lineBase = {255, 255, 255, 0.13},
        .lineActive = {122, 130, 255, 0.9},
        .nodeBase = {255, 255, 255, 0.2},
        .nodeActive = {122, 130, 255, 1},
        .glow = {122, 130, 255, 1},
        .ripple = {150, 158, 255, 1},
        .dotOpacity = 0.05,
    };
    static const GridColors light{
        .lineBase = {20, 20, 24, 0.1},
        .lineActive = {108, 116, 240, 0.85},
        .nodeBase = {20, 20, 24, 0.16},
        .nodeActive = {108, 116, 240, 1},
        .glow = {108, 116, 240, 1},
        .ripple = {130, 138, 245, 1},
        .dotOpacity = 0.06,
    };
    return theme == LK::Theme::Light ? light : dark;
}

double Ripple::strength(double now) const
{
    return 1.0 - KineticGrid::rippleDecay * (now - born);
}

double Ripple::radius(double now) const
{
    return std::max(0.0, (now - born) * KineticGrid::rippleSpeed);
}

GridMesh GridMesh::filling(double width, double height)
{
    const auto cells = [](double length) {
        return std::max(3, static_cast<int>(std::ceil(length / KineticGrid::cellSize)));
    };
    const int columns = cells(width);
    const int rows = cells(height);
    return {columns, rows, width / columns, height / rows};
}

SegmentLook SegmentLook::between(double intensityA, double intensityB, const GridColors &colors)
{
    const double q = smoothstep((intensityA + intensityB) / 2.0);
    return {RGBA::mixed(colors.lineBase, colors.lineActive, q), 0.8 + 0.7 * q};
}

NodeLook NodeLook::of(double intensity, const GridColors &colors)
{
    const double q = smoothstep(intensity);
    NodeLook look{.color = RGBA::mixed(colors.nodeBase, colors.nodeActive, q), .radius = 1.8 + 1.4 * q};
    if (glows(intensity)) {
        look.glowRadius = look.radius + 6.0 * (q - glowFrom) / (1.0 - glowFrom);
        look.glowOpacity = 0.3 * q;
    }
    return look;
}

bool NodeLook::glows(double intensity)
{
    return smoothstep(intensity) > glowFrom;
}

KineticGrid::KineticGrid()
{
    m_ripples.reserve(usualRipples);
    reset();
}

void KineticGrid::addRipple(QPointF at, double now)
{
    m_ripples.push_back({at.x(), at.y(), now});
}

void KineticGrid::advance(double now)
{
    const QPointF rest = m_target - m_mouse;
    const bool hasArrived = std::max(std::abs(rest.x()), std::abs(rest.y())) < restDistance;
    m_mouse = hasArrived ? m_target : m_mouse + rest * lerpSpeed;
    std::erase_if(m_ripples, [now](const Ripple &ripple) {
        const double age = now - ripple.born;
        return age >= rippleLifetime || age < 0.0; // a clock set back would keep it for ever
    });
}

void KineticGrid::reset()
{
    m_target = m_mouse = {offScreen, offScreen};
    m_ripples.clear();
}

bool KineticGrid::isAtRest() const
{
    return m_mouse == m_target && m_ripples.empty();
}

GridPoint KineticGrid::warp(const GridMesh &mesh, int column, int row, double now) const
{
    const QPointF point(column * mesh.cellWidth, row * mesh.cellHeight);
    const double ex = edgeFactor(column, mesh.columns + 1);
    const double ey = edgeFactor(row, mesh.rows + 1);
    const double edge = ex * ex * ey * ey;
    if (edge <= 0.0) {
        return {point.x(), point.y(), 0.0};
    }

    QPointF moved = point + rippleDisplacement(point, edge, now);
    const QPointF fromMouse = point - m_mouse;
    const double distance = std::hypot(fromMouse.x(), fromMouse.y());
    const double n = distance / influenceRadius;
    if (distance > 0.0 && n < 1.0 && n >= noPull) {
        const double weight = (1.0 - n) * (1.0 - n) * std::min(1.0, distance / pinchRadius);
        moved -= fromMouse / distance * (weight * maxWarp * edge);
    }
    return {moved.x(), moved.y(), edge * std::max(0.0, 1.0 - n)};
}

QPointF KineticGrid::rippleDisplacement(QPointF point, double edge, double now) const
{
    QPointF displacement;
    for (const Ripple &ripple : m_ripples) {
        const double strength = ripple.strength(now);
        const QPointF fromCentre = point - QPointF(ripple.x, ripple.y);
        const double distance = std::hypot(fromCentre.x(), fromCentre.y());
        const double offset = distance - ripple.radius(now);
        if (strength <= 0.0 || std::abs(offset) >= waveWidth) {
            continue;
        }
        const double amplitude = strength * (1.0 - std::abs(offset) / waveWidth) * rippleAmplitude * edge;
        // In the centre itself there is no direction, and any will do.
        const QPointF outward = distance > 0.0 ? fromCentre / distance : QPointF(1.0, 0.0);
        displacement -= (offset < 0.0 ? -amplitude : amplitude) * outward;
    }
    return displacement;
}

} // namespace larkspan
