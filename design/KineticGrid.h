#pragma once

#include <span>
#include <vector>

#include <QtCore/QPointF>

#include "design/LK.h"

namespace larkspan {

// A colour as the backgrounds mix it: r, g and b from 0 to 255, a from 0 to 1.
struct RGBA
{
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
    double a = 0.0;

    // The same colour with this opacity.
    [[nodiscard]] RGBA at(double opacity) const { return {r, g, b, opacity}; }
    // Component by component; share from 0 (from) to 1 (to).
    [[nodiscard]] static RGBA mixed(const RGBA &from, const RGBA &to, double share);

    friend bool operator==(const RGBA &, const RGBA &) = default;
};

// The colours of the kinetic grid in one theme, without its background, which is the window's.
struct GridColors
{
    RGBA lineBase;
    RGBA lineActive;
    RGBA nodeBase;
    RGBA nodeActive;
    RGBA glow;   // its opacity comes from the node
    RGBA ripple; // its opacity comes from the ripple
    double dotOpacity;

    static const GridColors &of(LK::Theme theme);
};

// A ring that runs outward from a click. Points; seconds of the clock that the grid is advanced by.
struct Ripple
{
    double x = 0.0;
    double y = 0.0;
    double born = 0.0;

    // Full at birth, nothing at the end of its life.
    [[nodiscard]] double strength(double now) const;
    [[nodiscard]] double radius(double now) const;

    friend bool operator==(const Ripple &, const Ripple &) = default;
};

// The mesh of cells that fills an area exactly: about square cells of the house size, never fewer than three a side.
struct GridMesh
{
    int columns = 0;
    int rows = 0;
    double cellWidth = 0.0;
    double cellHeight = 0.0;

    static GridMesh filling(double width, double height);
    [[nodiscard]] int pointCount() const { return (columns + 1) * (rows + 1); }

    friend bool operator==(const GridMesh &, const GridMesh &) = default;
};

// The place of a point of the mesh, and its brightness: intensity from 0 to 1.
struct GridPoint
{
    double x = 0.0;
    double y = 0.0;
    double intensity = 0.0;

    friend bool operator==(const GridPoint &, const GridPoint &) = default;
};

// The look of the line between two neighbouring points.
struct SegmentLook
{
    RGBA color;
    double width = 0.0; // points

    static SegmentLook between(double intensityA, double intensityB, const GridColors &colors);
};

// The look of a point of the mesh.
struct NodeLook
{
    RGBA color;
    double radius = 0.0;
    double glowRadius = 0.0;  // 0 for a node that doesn't glow
    double glowOpacity = 0.0; // at half the node's radius, fading to nothing at glowRadius

    static NodeLook of(double intensity, const GridColors &colors);
    [[nodiscard]] static bool glows(double intensity);
};

// The moving part of the kinetic grid: a pointer that is followed softly, and the ripples of its clicks. It only
// calculates, without a clock or drawing. Lengths in points.
class KineticGrid
{
public:
    static constexpr double cellSize = 55.0;         // side of a cell, about
    static constexpr double influenceRadius = 260.0; // reach of the pointer's pull
    static constexpr double maxWarp = 24.0;          // greatest pull on a point
    static constexpr double dotSpacing = 28.0;       // distance of the dots behind the mesh
    static constexpr double dotDiameter = 1.4;
    static constexpr double lerpSpeed = 0.08;                   // share of the way to the pointer covered in each frame
    static constexpr double waveWidth = 55.0;                   // half of a ripple's band
    static constexpr double rippleSpeed = 400.0;                // points a second
    static constexpr double rippleDecay = 1.2;                  // strength lost in a second
    static constexpr double rippleLifetime = 1.0 / rippleDecay; // seconds
    static constexpr double ringWidth = 1.5;
    static constexpr double ringOpacity = 0.28;  // of a ring that is just born
    static constexpr double offScreen = -9999.0; // both coordinates of a pointer that isn't there

    KineticGrid();

    void movePointer(QPointF to) { m_target = to; }
    // Lets the followed pointer drift off the window, so that the mesh relaxes instead of snapping back.
    void pointerLeft() { m_target = {offScreen, offScreen}; }
    void addRipple(QPointF at, double now);
    // Takes one step for a frame: follows the pointer, and drops the ripples that are over.
    void advance(double now);
    // Makes the mesh flat and unlit, as before any event.
    void reset();
    // Returns true if nothing changes until the next event.
    [[nodiscard]] bool isAtRest() const;

    [[nodiscard]] QPointF mouse() const { return m_mouse; }
    [[nodiscard]] std::span<const Ripple> ripples() const { return m_ripples; }

    // Returns the present place of the point of this column and row.
    [[nodiscard]] GridPoint warp(const GridMesh &mesh, int column, int row, double now) const;

private:
    [[nodiscard]] QPointF rippleDisplacement(QPointF point, double edge, double now) const;

    QPointF m_target;
    QPointF m_mouse;
    std::vector<Ripple> m_ripples;
};

} // namespace larkspan
