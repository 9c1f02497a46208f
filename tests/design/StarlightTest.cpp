#include <cmath>

#include "design/Starlight.h"

using namespace larkspan;
using namespace larkspan::starlight;
using testing::ElementsAre;

namespace {

// The noise takes the 43758th part of a sine: a rounding of the last place is this much.
constexpr double tolerance = 1e-6;

} // namespace

TEST(Starlight, ItsNoiseIsTheFractionOfAScaledSine)
{
    EXPECT_EQ(hash(0.0), 0.0);
    EXPECT_NEAR(hash(M_PI / 2), 0.5453, tolerance);  // of 43758.5453
    EXPECT_NEAR(hash(-M_PI / 2), 0.4547, tolerance); // of -43758.5453, and fractions count upward
    EXPECT_NEAR(hash(1.0), 0.546207352, tolerance);
    EXPECT_NEAR(hash(-1.0), 0.453792648, tolerance);
}

// With the noise of 12.9898 × (31.7 n + 7.13 c) + 78.233 × (17.3 n + 5.19 r) beside each.
TEST(Starlight, ALevelIsTakenByTheNoiseOfSlotColumnAndRow)
{
    EXPECT_EQ(levelAt(0, 0, 0), 0.03);     // 0
    EXPECT_EQ(levelAt(0, 1, 0), 0.18);     // 0.4355
    EXPECT_EQ(levelAt(0, 0, 1), 1.0);      // 0.9312
    EXPECT_EQ(levelAt(1, 0, 0), 0.85);     // 0.8151
    EXPECT_EQ(levelAt(1, 2, 3), 0.65);     // 0.7503
    EXPECT_EQ(levelAt(2, 2, 3), 0.3);      // 0.5276
    EXPECT_EQ(levelAt(587, 59, 39), 0.45); // 0.6633
}

TEST(Starlight, BrightnessGlidesFromLevelToLevelWithNoRest)
{
    EXPECT_EQ(brightness(0.0, 0, 0), 0.03);
    // half-way through slot 0: the smoothstep of a half is a half
    EXPECT_NEAR(brightness(0.85, 0, 0), (0.03 + 0.85) / 2, tolerance);
    // a quarter through it: 0.15625 of the way
    EXPECT_NEAR(brightness(0.425, 0, 0), 0.03 + 0.82 * 0.15625, tolerance);
    EXPECT_NEAR(brightness(1.7, 2, 3), 0.65, tolerance);
    EXPECT_NEAR(brightness(3.0, 2, 3), 0.3490128231, tolerance);
    EXPECT_NEAR(brightness(999.0, 59, 39), 0.3428658661, tolerance);
}

TEST(Starlight, CellsArriveFromTheCentreOutwardWithAScatter)
{
    EXPECT_NEAR((Lattice{60, 40}.arrival(30, 20)), 0.2543394982, tolerance); // in the centre, scatter alone
    EXPECT_NEAR((Lattice{59, 40}.arrival(0, 0)), 0.7772370285, tolerance);
    // 5 cells out, less the scatter of (3, 4): 0.015 × 5
    EXPECT_NEAR((Lattice{0, 0}.arrival(3, 4) - Lattice{6, 8}.arrival(3, 4)), 0.075, tolerance);
}

TEST(Starlight, ACellFadesInOverFourTenthsOfASecond)
{
    const Lattice lattice{60, 40};
    EXPECT_EQ(lattice.opacity(0.2, 30, 20), 0.0);
    // 0.3 is 0.0457 after its arrival: 0.1142 of a brightness of 0.9323
    EXPECT_NEAR(lattice.opacity(0.3, 30, 20), 0.1064350665, tolerance);
    EXPECT_NEAR(lattice.opacity(3.0, 0, 0), brightness(3.0, 0, 0), tolerance);
}

TEST(Starlight, ACellTooFaintToSeeIsNotDrawn)
{
    const Lattice lattice{60, 40};
    const double arrival = lattice.arrival(30, 20);
    const double level = brightness(arrival, 30, 20);
    EXPECT_EQ(lattice.opacity(arrival + 0.4 * 0.0018 / level, 30, 20), 0.0);
    EXPECT_GE(lattice.opacity(arrival + 0.4 * 0.0023 / level, 30, 20), 0.002);
}

TEST(Starlight, AtTheStartNoCellHasArrived)
{
    const Lattice lattice = Lattice::filling(1180, 790);
    for (int row = 0; row < lattice.rows; ++row) {
        for (int column = 0; column < lattice.columns; ++column) {
            EXPECT_EQ(lattice.opacity(0.0, column, row), 0.0);
        }
    }
}

TEST(Starlight, TheSameCellAtTheSameMomentAlwaysLooksTheSame)
{
    const Lattice lattice{59, 40};
    EXPECT_EQ(lattice.opacity(12.34, 7, 11), lattice.opacity(12.34, 7, 11));
    Field one;
    Field other;
    one.moveTo(12.34, lattice);
    other.moveTo(3.0, {20, 10});
    other.moveTo(999.0, lattice);
    other.moveTo(12.34, lattice);
    for (std::size_t index = 0; index < one.cells().size(); ++index) {
        EXPECT_EQ(one.opacity(one.cells()[index]), other.opacity(other.cells()[index]));
    }
}

TEST(Starlight, AResizeMovesTheCentreButNotTheLookOfACell)
{
    const Lattice small = Lattice::filling(980, 640);
    const Lattice large = Lattice::filling(3840, 2160);
    EXPECT_EQ(small, (Lattice{49, 32}));
    EXPECT_EQ(large, (Lattice{192, 108}));
    EXPECT_NE(small.arrival(24, 16), large.arrival(24, 16));
    // Once all have arrived, and so in a still picture.
    for (int row = 0; row < small.rows; ++row) {
        for (int column = 0; column < small.columns; ++column) {
            EXPECT_EQ(small.opacity(stillMoment, column, row), large.opacity(stillMoment, column, row));
            EXPECT_GT(small.opacity(stillMoment, column, row), 0.0);
        }
    }
}

TEST(Starlight, AboutASixthOfTheCellsAreInTheAccentColour)
{
    std::vector<std::pair<int, int>> accents;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 8; ++column) {
            if (isAccent(column, row)) {
                accents.emplace_back(column, row);
            }
        }
    }
    EXPECT_THAT(accents,
                ElementsAre(std::pair(0, 0), std::pair(2, 0), std::pair(0, 2), std::pair(1, 2), std::pair(7, 3)));
}

TEST(Starlight, TheFieldDrawsExactlyWhatTheArithmeticSays)
{
    const Lattice lattice = Lattice::filling(1180, 790);
    Field field;
    // Within a slot, on to the next, far on, and back: time that jumps.
    for (const double seconds : {0.0, 0.5, 0.9, 1.7, 1.8, 3.5, 999.0, 86400.0, 0.7, -3.0}) {
        field.moveTo(seconds, lattice);
        std::size_t index = 0;
        for (int row = 0; row < lattice.rows; ++row) {
            for (int column = 0; column < lattice.columns; ++column, ++index) {
                const Field::Cell &cell = field.cells().at(index);
                ASSERT_EQ(field.opacity(cell), lattice.opacity(seconds, column, row)) << seconds;
                ASSERT_EQ(cell.isAccent, isAccent(column, row));
            }
        }
    }
}

TEST(Starlight, AMomentThatIsNoNumberShowsNothing)
{
    Field field;
    field.moveTo(NAN, {3, 3});
    for (const Field::Cell &cell : field.cells()) {
        EXPECT_EQ(field.opacity(cell), 0.0);
    }
    EXPECT_EQ((Lattice{3, 3}.opacity(NAN, 1, 1)), 0.0);
}

TEST(StarlightColors, AreTheseInEachTheme)
{
    EXPECT_EQ(Colors::of(LK::Theme::Dark).plain, (RGBA{255, 255, 255, 1}));
    EXPECT_EQ(Colors::of(LK::Theme::Dark).accent, (RGBA{122, 130, 255, 1}));
    EXPECT_EQ(Colors::of(LK::Theme::Light).plain, (RGBA{20, 20, 24, 1}));
    EXPECT_EQ(Colors::of(LK::Theme::Light).accent, (RGBA{108, 116, 240, 1}));
}
