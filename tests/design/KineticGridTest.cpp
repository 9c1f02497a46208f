#include <cmath>

#include "design/KineticGrid.h"

using namespace larkspan;
using testing::ElementsAre;

namespace {

constexpr double exactness = 1e-9;

// The point of column 10 and row 7 is far from every edge.
const GridMesh wide = GridMesh::filling(1100, 800);

MATCHER_P3(IsPoint, x, y, intensity, "")
{
    return std::abs(arg.x - x) < exactness && std::abs(arg.y - y) < exactness &&
           std::abs(arg.intensity - intensity) < exactness;
}

// A grid whose pointer has arrived here.
KineticGrid pointedAt(QPointF point)
{
    KineticGrid grid;
    grid.movePointer(point);
    while (grid.mouse() != point) {
        grid.advance(0.0);
    }
    return grid;
}

GridPoint unmoved(const GridMesh &mesh, int column, int row)
{
    return {column * mesh.cellWidth, row * mesh.cellHeight, 0.0};
}

} // namespace

TEST(GridMesh, FillsTheAreaExactlyWithCellsOfAboutTheHouseSize)
{
    EXPECT_EQ(GridMesh::filling(1180, 790), (GridMesh{22, 15, 1180.0 / 22, 790.0 / 15}));
    EXPECT_EQ(wide, (GridMesh{20, 15, 55, 800.0 / 15}));
    EXPECT_EQ(GridMesh::filling(3840, 2160), (GridMesh{70, 40, 3840.0 / 70, 54}));
    EXPECT_EQ(GridMesh::filling(7680, 4320), (GridMesh{140, 79, 7680.0 / 140, 4320.0 / 79}));
}

TEST(GridMesh, OfAWindowNarrowerThanThreeCellsIsStillThreeByThree)
{
    EXPECT_EQ(GridMesh::filling(90, 60), (GridMesh{3, 3, 30, 20}));
    EXPECT_EQ(GridMesh::filling(1, 1), (GridMesh{3, 3, 1.0 / 3, 1.0 / 3}));
}

TEST(KineticGrid, BeforeAnyPointerEventNothingIsPulledOrLit)
{
    const KineticGrid grid;
    EXPECT_EQ(grid.mouse(), QPointF(-9999, -9999));
    EXPECT_TRUE(grid.isAtRest());
    for (int row = 0; row <= wide.rows; ++row) {
        for (int column = 0; column <= wide.columns; ++column) {
            EXPECT_EQ(grid.warp(wide, column, row, 0.0), unmoved(wide, column, row));
        }
    }
}

TEST(KineticGrid, ThePointerIsFollowedByEightHundredthsOfTheWayInEachFrame)
{
    KineticGrid grid = pointedAt({100, 200});
    grid.movePointer({200, 100});
    grid.advance(0.0);
    EXPECT_NEAR(grid.mouse().x(), 108.0, exactness);
    EXPECT_NEAR(grid.mouse().y(), 192.0, exactness);
    grid.advance(100.0); // by frames, whatever the clock says
    EXPECT_NEAR(grid.mouse().x(), 115.36, exactness);
    EXPECT_NEAR(grid.mouse().y(), 184.64, exactness);
}

// The point of column 10 and row 5 lies at (500, 250) here, and the pointer d to its right: n = d / 260, and the pull
// is (1 - n)² × min(1, d / 60) × 24.
TEST(KineticGrid, APointIsPulledTowardsThePointer)
{
    const GridMesh mesh{20, 10, 50, 50};
    // d = 130: 0.25 × 1 × 24 = 6
    EXPECT_THAT(pointedAt({630, 250}).warp(mesh, 10, 5, 0.0), IsPoint(506.0, 250.0, 0.5));
    // d = 26: 0.81 × 26/60 × 24 = 8.424
    EXPECT_THAT(pointedAt({526, 250}).warp(mesh, 10, 5, 0.0), IsPoint(508.424, 250.0, 0.9));
    // d = 65 along 3:4:5: 0.5625 × 24 = 13.5, of which 0.6 and 0.8
    EXPECT_THAT(pointedAt({539, 302}).warp(mesh, 10, 5, 0.0), IsPoint(508.1, 260.8, 0.75));
}

TEST(KineticGrid, APointerExactlyOnAPointDoesNotPullItAndLightsItFully)
{
    const GridMesh mesh{20, 10, 50, 50};
    EXPECT_EQ(pointedAt({500, 250}).warp(mesh, 10, 5, 0.0), (GridPoint{500, 250, 1.0}));
}

TEST(KineticGrid, APointerWithinAHundredthOfItsReachDoesNotPull)
{
    const GridMesh mesh{20, 10, 50, 50};
    EXPECT_THAT(pointedAt({502.5, 250}).warp(mesh, 10, 5, 0.0), IsPoint(500.0, 250.0, 1.0 - 2.5 / 260));
    // at 0.01 itself it does: 0.99² × 2.6/60 × 24
    EXPECT_THAT(pointedAt({502.6, 250}).warp(mesh, 10, 5, 0.0), IsPoint(501.019304, 250.0, 0.99));
}

TEST(KineticGrid, APointerAtTheEndOfItsReachDoesNothing)
{
    const GridMesh mesh{20, 10, 50, 50};
    EXPECT_THAT(pointedAt({760, 250}).warp(mesh, 10, 5, 0.0), IsPoint(500.0, 250.0, 0.0));
    EXPECT_THAT(pointedAt({5e6, -3e7}).warp(mesh, 10, 5, 0.0), IsPoint(500.0, 250.0, 0.0));
}

TEST(KineticGrid, TheOuterEdgeIsPinnedAndTheEffectGrowsOverTwoCells)
{
    const GridMesh mesh{20, 10, 50, 50};
    // On the edge itself, with the pointer close by.
    for (const auto &[column, row] : {std::pair(0, 5), {20, 5}, {10, 0}, {10, 10}, {0, 0}, {20, 10}}) {
        const KineticGrid grid = pointedAt({column * 50.0 + 30, row * 50.0 + 30});
        EXPECT_EQ(grid.warp(mesh, column, row, 0.0), unmoved(mesh, column, row));
    }
    // One cell in: (1 / 1.5)² = 4/9 of 6 points and of an intensity of 0.5; in a corner its square.
    EXPECT_THAT(pointedAt({180, 250}).warp(mesh, 1, 5, 0.0), IsPoint(50 + 8.0 / 3, 250.0, 2.0 / 9));
    EXPECT_THAT(pointedAt({180, 50}).warp(mesh, 1, 1, 0.0), IsPoint(50 + 32.0 / 27, 50.0, 8.0 / 81));
    EXPECT_THAT(pointedAt({1080, 250}).warp(mesh, 19, 5, 0.0), IsPoint(950 + 8.0 / 3, 250.0, 2.0 / 9));
    // Two cells in it is whole.
    EXPECT_THAT(pointedAt({230, 250}).warp(mesh, 2, 5, 0.0), IsPoint(106.0, 250.0, 0.5));
}

// At age 0.25 a ripple has strength 0.7 and radius 100.
TEST(KineticGrid, ARippleDrawsWhatIsAheadOfItInwardAndPushesWhatIsBehindOutward)
{
    const GridMesh mesh{20, 10, 50, 50};
    const auto withRippleAt = [](QPointF centre) {
        KineticGrid grid;
        grid.addRipple(centre, 3.0);
        return grid;
    };
    // 11 ahead of the ring: 0.7 × 0.8 × 18 = 10.08 towards the centre
    EXPECT_THAT(withRippleAt({389, 250}).warp(mesh, 10, 5, 3.25), IsPoint(489.92, 250.0, 0.0));
    // 11 behind it: as much away from the centre
    EXPECT_THAT(withRippleAt({500, 161}).warp(mesh, 10, 5, 3.25), IsPoint(500.0, 260.08, 0.0));
    // on the ring: 12.6 towards the centre
    EXPECT_THAT(withRippleAt({600, 250}).warp(mesh, 10, 5, 3.25), IsPoint(512.6, 250.0, 0.0));
    // 55 ahead and 55 behind: outside the band
    EXPECT_THAT(withRippleAt({345, 250}).warp(mesh, 10, 5, 3.25), IsPoint(500.0, 250.0, 0.0));
    EXPECT_THAT(withRippleAt({455, 250}).warp(mesh, 10, 5, 3.25), IsPoint(500.0, 250.0, 0.0));
    // just born, on the very point: 18 in the one direction that nothing has
    EXPECT_THAT(withRippleAt({500, 250}).warp(mesh, 10, 5, 3.0), IsPoint(482.0, 250.0, 0.0));
}

TEST(KineticGrid, RipplesAddUp)
{
    const GridMesh mesh{20, 10, 50, 50};
    KineticGrid grid;
    grid.addRipple({389, 250}, 3.0);
    grid.addRipple({500, 161}, 3.0);
    EXPECT_THAT(grid.warp(mesh, 10, 5, 3.25), IsPoint(489.92, 260.08, 0.0));
}

TEST(KineticGrid, ARippleAtTheWindowsVeryEdgeMovesNoEdgePoint)
{
    KineticGrid grid;
    grid.addRipple({0, 250}, 0.0);
    const GridMesh mesh{20, 10, 50, 50};
    for (int row = 0; row <= mesh.rows; ++row) {
        EXPECT_EQ(grid.warp(mesh, 0, row, 0.1), unmoved(mesh, 0, row));
    }
}

TEST(KineticGrid, ARippleIsDroppedAtTheEndOfItsLife)
{
    KineticGrid grid;
    grid.addRipple({1, 2}, 10.0);
    EXPECT_FALSE(grid.isAtRest());
    grid.advance(10.8333);
    EXPECT_THAT(grid.ripples(), ElementsAre(Ripple{1, 2, 10.0}));
    grid.advance(10.8334);
    EXPECT_THAT(grid.ripples(), ElementsAre());
    EXPECT_TRUE(grid.isAtRest());
}

TEST(KineticGrid, TimeThatJumpsLeavesNoRippleBehind)
{
    KineticGrid forward;
    forward.addRipple({1, 2}, 10.0);
    forward.advance(1e9);
    EXPECT_THAT(forward.ripples(), ElementsAre());
    KineticGrid back;
    back.addRipple({1, 2}, 10.0);
    back.advance(9.0);
    EXPECT_THAT(back.ripples(), ElementsAre());
}

TEST(KineticGrid, AHundredClicksASecondNeverKeepMoreThanALifetimesWorth)
{
    KineticGrid grid;
    for (int click = 0; click < 1000; ++click) {
        const double now = click / 100.0;
        grid.addRipple({550, 400}, now);
        grid.advance(now);
        ASSERT_LE(grid.ripples().size(), 84U);
    }
    const GridPoint point = grid.warp(wide, 10, 7, 10.0);
    EXPECT_TRUE(std::isfinite(point.x) && std::isfinite(point.y));
}

TEST(KineticGrid, AfterThePointerLeavesTheMeshRelaxesInsteadOfSnappingBack)
{
    const GridMesh mesh{20, 10, 50, 50};
    KineticGrid grid = pointedAt({630, 250});
    grid.pointerLeft();
    EXPECT_THAT(grid.warp(mesh, 10, 5, 0.0), IsPoint(506.0, 250.0, 0.5));
    grid.advance(0.0);
    EXPECT_NEAR(grid.mouse().x(), 630 - 0.08 * 10629, exactness);
    for (int frame = 0; frame < 200; ++frame) {
        grid.advance(0.0);
    }
    EXPECT_TRUE(grid.isAtRest());
    EXPECT_EQ(grid.warp(mesh, 10, 5, 0.0), unmoved(mesh, 10, 5));
}

TEST(Ripple, WeakensAndGrowsWithItsAge)
{
    const Ripple ripple{0, 0, 5.0};
    EXPECT_EQ(ripple.strength(5.0), 1.0);
    EXPECT_NEAR(ripple.strength(5.5), 0.4, exactness);
    EXPECT_NEAR(ripple.radius(5.5), 200.0, exactness);
    EXPECT_EQ(ripple.radius(4.0), 0.0);
    EXPECT_NEAR(ripple.strength(5.0 + KineticGrid::rippleLifetime), 0.0, exactness);
}

// smoothstep(0.5) = 0.5; smoothstep(0.25) = 0.0625 × 2.5 = 0.15625
TEST(SegmentLook, GoesFromItsBaseToItsActiveColourAndThickens)
{
    const GridColors &dark = GridColors::of(LK::Theme::Dark);
    EXPECT_EQ(SegmentLook::between(0, 0, dark).color, (RGBA{255, 255, 255, 0.13}));
    EXPECT_EQ(SegmentLook::between(0, 0, dark).width, 0.8);
    EXPECT_EQ(SegmentLook::between(1, 1, dark).color, (RGBA{122, 130, 255, 0.9}));
    EXPECT_NEAR(SegmentLook::between(1, 1, dark).width, 1.5, exactness);
    EXPECT_EQ(SegmentLook::between(0, 1, dark).color, (RGBA{188.5, 192.5, 255, 0.515}));
    EXPECT_NEAR(SegmentLook::between(0, 1, dark).width, 1.15, exactness);
    const RGBA quarter = SegmentLook::between(0.5, 0.0, GridColors::of(LK::Theme::Light)).color;
    EXPECT_NEAR(quarter.r, 20 + 88 * 0.15625, exactness);
    EXPECT_NEAR(quarter.g, 20 + 96 * 0.15625, exactness);
    EXPECT_NEAR(quarter.b, 24 + 216 * 0.15625, exactness);
    EXPECT_NEAR(quarter.a, 0.1 + 0.75 * 0.15625, exactness);
}

TEST(NodeLook, GrowsAndGlowsWithItsIntensity)
{
    const GridColors &dark = GridColors::of(LK::Theme::Dark);
    EXPECT_EQ(NodeLook::of(0, dark).color, (RGBA{255, 255, 255, 0.2}));
    EXPECT_EQ(NodeLook::of(0, dark).radius, 1.8);
    EXPECT_EQ(NodeLook::of(0, dark).glowRadius, 0.0);
    const NodeLook half = NodeLook::of(0.5, dark);
    EXPECT_NEAR(half.radius, 2.5, exactness);
    EXPECT_NEAR(half.glowRadius, 2.5 + 6 * 0.2 / 0.7, exactness);
    EXPECT_NEAR(half.glowOpacity, 0.15, exactness);
    const NodeLook full = NodeLook::of(1, dark);
    EXPECT_EQ(full.color, (RGBA{122, 130, 255, 1}));
    EXPECT_NEAR(full.radius, 3.2, exactness);
    EXPECT_NEAR(full.glowRadius, 9.2, exactness);
    EXPECT_NEAR(full.glowOpacity, 0.3, exactness);
}

TEST(NodeLook, DoesNotGlowUpToThreeTenths)
{
    // smoothstep(0.363257…) = 0.3
    EXPECT_EQ(NodeLook::of(0.3632, GridColors::of(LK::Theme::Dark)).glowRadius, 0.0);
    EXPECT_GT(NodeLook::of(0.3633, GridColors::of(LK::Theme::Dark)).glowRadius, 0.0);
}

TEST(GridColors, OfTheLightThemeAreThese)
{
    const GridColors &light = GridColors::of(LK::Theme::Light);
    EXPECT_EQ(light.lineBase, (RGBA{20, 20, 24, 0.1}));
    EXPECT_EQ(light.lineActive, (RGBA{108, 116, 240, 0.85}));
    EXPECT_EQ(light.nodeBase, (RGBA{20, 20, 24, 0.16}));
    EXPECT_EQ(light.nodeActive, (RGBA{108, 116, 240, 1}));
    EXPECT_EQ(light.glow.at(0), (RGBA{108, 116, 240, 0}));
    EXPECT_EQ(light.ripple.at(0), (RGBA{130, 138, 245, 0}));
    EXPECT_EQ(light.dotOpacity, 0.06);
}

TEST(GridColors, OfTheDarkThemeAreThese)
{
    const GridColors &dark = GridColors::of(LK::Theme::Dark);
    EXPECT_EQ(dark.lineBase, (RGBA{255, 255, 255, 0.13}));
    EXPECT_EQ(dark.lineActive, (RGBA{122, 130, 255, 0.9}));
    EXPECT_EQ(dark.nodeBase, (RGBA{255, 255, 255, 0.2}));
    EXPECT_EQ(dark.nodeActive, (RGBA{122, 130, 255, 1}));
    EXPECT_EQ(dark.glow.at(0), (RGBA{122, 130, 255, 0}));
    EXPECT_EQ(dark.ripple.at(0), (RGBA{150, 158, 255, 0}));
    EXPECT_EQ(dark.dotOpacity, 0.05);
}
