#pragma once

#include <array>
#include <vector>

#include "design/KineticGrid.h"

// The field of small squares that bloom from the centre and then twinkle, as arithmetic. How a cell looks is a pure
// function of its column, its row, the lattice and the seconds since the field appeared: nothing is random.
namespace larkspan::starlight {

inline constexpr double cellSize = 20.0;       // pitch, points
inline constexpr double dotSize = 6.0;         // side of a square, points
inline constexpr double dotRadius = 1.5;       // of its corners
inline constexpr double rerollInterval = 1.7;  // seconds between a cell's targets
inline constexpr double purpleFraction = 0.16; // of the cells are in the accent colour
inline constexpr double stillMoment = 999.0;   // what is shown where nothing may move: all have arrived
inline constexpr std::array levels{0.03, 0.03, 0.08, 0.08, 0.18, 0.3, 0.45, 0.65, 0.85, 1.0};

// Noise in [0, 1) from an angle.
[[nodiscard]] double hash(double angle);
// The brightness that a cell has at the beginning of a slot; slots are rerollInterval long.
[[nodiscard]] double levelAt(double slot, int column, int row);
// Glides from the slot's level to the next one's.
[[nodiscard]] double brightness(double seconds, int column, int row);
[[nodiscard]] bool isAccent(int column, int row);

struct Lattice
{
    int columns = 0;
    int rows = 0;

    static Lattice filling(double width, double height);
    [[nodiscard]] int cellCount() const { return columns * rows; }
    // When the cell begins to fade in, in seconds: the further from the centre, the later.
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

// The same for all cells at once, for drawing: what doesn't change from frame to frame is worked out once a slot.
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

    // Row by row.
    [[nodiscard]] const std::vector<Cell> &cells() const { return m_cells; }
    [[nodiscard]] const Lattice &lattice() const { return m_lattice; }
    // Allocates when the lattice grows, and at no other time.
    void moveTo(double seconds, const Lattice &lattice);
    // As the lattice's.
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
