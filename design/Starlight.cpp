#include "design/Starlight.h"

#include <algorithm>
#include <cmath>

namespace larkspan::starlight {

namespace {

constexpr double columnAngle = 12.9898;
constexpr double rowAngle = 78.233;
constexpr double fadeIn = 0.4;           // seconds
constexpr double invisible = 0.002;      // below that a cell isn't drawn
constexpr double arrivalPerCell = 0.015; // seconds for each cell of distance from the centre
constexpr double arrivalScatter = 0.3;   // seconds, at most

struct Slot
{
    double number;
    double glide;
};

Slot slotAt(double seconds)
{
    const double u = seconds / rerollInterval;
    const double number = std::floor(u);
    const double f = u - number;
    return {number, f * f * (3.0 - 2.0 * f)};
}

double faded(double brightness, double seconds, double arrival)
{
    // Written so that a time that is no number shows nothing.
    if (!(seconds > arrival)) {
        return 0.0;
    }
    const double opacity = brightness * std::min(1.0, (seconds - arrival) / fadeIn);
    return opacity >= invisible ? opacity : 0.0;
}

} // namespace

double hash(double angle)
{
    const double scaled = std::sin(angle) * 43758.5453;
    return scaled - std::floor(scaled);
}

double levelAt(double slot, int column, int row)
{
    const double noise = hash(columnAngle * (31.7 * slot + 7.13 * column) + rowAngle * (17.3 * slot + 5.19 * row));
    const double index = static_cast<double>(levels.size()) * noise;
    // Written so that a noise that is no number is the first.
    return index >= 1.0 ? levels.at(std::min(static_cast<std::size_t>(index), levels.size() - 1)) : levels.front();
}

double brightness(double seconds, int column, int row)
{
    const auto [slot, glide] = slotAt(seconds);
    return std::lerp(levelAt(slot, column, row), levelAt(slot + 1.0, column, row), glide);
}

bool isAccent(int column, int row)
{
    return hash(columnAngle * column + rowAngle * row) < purpleFraction;
}

Lattice Lattice::filling(double width, double height)
{
    return {static_cast<int>(std::ceil(width / cellSize)), static_cast<int>(std::ceil(height / cellSize))};
}

double Lattice::arrival(int column, int row) const
{
    const double distance = std::hypot(column - columns / 2.0, row - rows / 2.0);
    return arrivalPerCell * distance + arrivalScatter * hash(columnAngle * (column + 91.3) + rowAngle * (row + 47.1));
}

double Lattice::opacity(double seconds, int column, int row) const
{
    return faded(brightness(seconds, column, row), seconds, arrival(column, row));
}

const Colors &Colors::of(LK::Theme theme)
{
    static const Colors dark{.plain = {255, 255, 255, 1}, .accent = {122, 130, 255, 1}};
    static const Colors light{.plain = {20, 20, 24, 1}, .accent = {108, 116, 240, 1}};
    return theme == LK::Theme::Light ? light : dark;
}

void Field::moveTo(double seconds, const Lattice &lattice)
{
    const auto [slot, glide] = slotAt(seconds);
    const bool isNewLattice = lattice != m_lattice;
    if (isNewLattice) {
        m_lattice = lattice;
        m_cells.resize(static_cast<std::size_t>(lattice.cellCount()));
        std::size_t index = 0;
        for (int row = 0; row < lattice.rows; ++row) {
            for (int column = 0; column < lattice.columns; ++column, ++index) {
                m_cells[index].arrival = lattice.arrival(column, row);
                m_cells[index].isAccent = isAccent(column, row);
            }
        }
    }
    if (isNewLattice || slot != m_slot) {
        lookUpLevels(slot, !isNewLattice && slot == m_slot + 1.0);
        m_slot = slot;
    }
    m_seconds = seconds;
    m_glide = glide;
}

void Field::lookUpLevels(double slot, bool isNextSlot)
{
    std::size_t index = 0;
    for (int row = 0; row < m_lattice.rows; ++row) {
        for (int column = 0; column < m_lattice.columns; ++column, ++index) {
            Cell &cell = m_cells[index];
            cell.level = isNextSlot ? cell.nextLevel : levelAt(slot, column, row);
            cell.nextLevel = levelAt(slot + 1.0, column, row);
        }
    }
}

double Field::opacity(const Cell &cell) const
{
    return faded(std::lerp(cell.level, cell.nextLevel, m_glide), m_seconds, cell.arrival);
}

} // namespace larkspan::starlight
