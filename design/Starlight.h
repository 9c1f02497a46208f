#pragma once

#include <array>
#include <vector>

#include "design/KineticGrid.h"

// Calculates a field of small squares that bloom from the centre and then twinkle. A cell's look is a pure function of
// its column, its row, the lattice and the seconds since the field appeared: nothing is random.
namespace larkspan::starlight {

inline constexpr double cellSize = 20.0;       // pitch, points
inline constexpr double dotSize = 6.0;         // side of a square, points
inline constexpr double dotRadius = 1.5;       // of its corners
inline constexpr double rerollInterval = 1.7;  // seconds between a cell's targets
inline constexpr double purpleFraction = 0.16; // share of the cells in the accent colour
inline constexpr double stillMoment = 999.0;   // the moment of the still picture: all cells have appeared
inline constexpr std::array levels{0.03, 0.03, 0.08, 0.08, 0.18, 0.3, 0.45, 0.65, 0.85, 1.0};

// Returns noise in [0, 1) from an angle.
[[nodiscard]] double hash(double angle);
// Returns a cell's brightness at the beginning of a slot; slots are rerollInterval long.
[[nodiscard]] double levelAt(double slot, int column, int row);
// Returns a cell's brightness at a moment, between the levels of its slot and the next one.
[[nodiscard]] double brightness(double seconds, int column, int row);
[[nodiscard]] bool isAccent(int column, int row);

struct Lattice
{
    int columns = 0;
    int rows = 0;

    static Lattice filling(double width, double height);
    [[nodiscard]] int cellCount() const { return columns * rows; }
    // Returns the second at which a cell begins to fade in: the further from the centre, the later.
    [[nodiscard]] double arrival(int column, int row) const;
    // Returns the opacity of a cell; 0 for one that isn't drawn.
    [[nodiscard]] double opacity(double seconds, int column, int row) const;

    friend bool operator==(const Lattice &, const Lattice &) = default;
};

struct Colors
{
    RGBA plain;
    RGBA accent;

    static const Colors &of(LK::Theme theme);
};

// The state of all cells, for drawing. Values that don't change from frame to frame are worked out once for each slot.
class Field
{
public:
    struct Cell
    {
        double arrival = 0.0;
        double level = 0.0; // of the current slot
        double nextLevel = 0.0;
        bool isAccent = false;
    };

    // Returns the cells row by row.
    [[nodiscard]] const std::vector<Cell> &cells() const { return m_cells; }
    [[nodiscard]] const Lattice &lattice() const { return m_lattice; }
    // Allocates only when the lattice grows.
    void moveTo(double seconds, const Lattice &lattice);
    // Returns the same as Lattice::opacity.
    [[nodiscard]] double opacity(const Cell &cell) const;

private:
    void lookUpLevels(double slot, bool isNextSlot);

    Lattice m_lattice;
    std::vector<Cell> m_cells;
    double m_seconds = 0.0;
    double m_slot = 0.0;
    double m_glide = 0.0; // share of the way to the next level
};

} // namespace larkspan::starlight
