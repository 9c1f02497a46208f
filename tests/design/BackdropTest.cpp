// What moves the backgrounds on a display, and what they do then.
#include <cmath>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "design/LKKineticGridCanvas.h"
#include "design/LKStarlightCanvas.h"
#include "tests/design/BackdropScene.h"
#include "tests/design/PaintedBackdrops.h"
#include "tests/support/Motion.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST(Backdrop, DrawsNoFrameInBoringModeAndGoesOnAfterIt)
{
    BackdropScene scene("LKStarlightBackground { anchors.fill: parent }", {600, 400});
    const FrameCount frames(scene.window());
    EXPECT_TRUE(frames.keepComing());
    LK::instance().setBoringMode(true);
    EXPECT_EQ(runningAnimations(), 0);
    LK::instance().setBoringMode(false);
    EXPECT_TRUE(frames.keepComing());
}

TEST(Backdrop, EnteringBoringModeWhileTheMeshIsWarpedFlattensIt)
{
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", {600, 400});
    auto &canvas = scene.canvas<LKKineticGridCanvas>();
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {300, 200});
    LK::instance().setBoringMode(true);
    EXPECT_TRUE(canvas.grid().isAtRest());
    EXPECT_FALSE(canvas.isMoving());
    expectAlike(scene.picture(u"grid-flattened"_s), paintedGrid({}, {600, 400}, 0.0));
}

TEST(Backdrop, AGridThatNothingTouchesComesToRestAndWakesAgain)
{
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", {600, 400});
    auto &canvas = scene.canvas<LKKineticGridCanvas>();
    EXPECT_TRUE(waitUntil([&] { return !canvas.isMoving(); }));
    canvas.click({300, 200});
    EXPECT_TRUE(canvas.isMoving());
    scene.time = 2.0;
    EXPECT_TRUE(waitUntil([&] { return !canvas.isMoving(); }));
    EXPECT_TRUE(canvas.grid().ripples().empty());
}

TEST(Backdrop, OneThatIsHiddenStandsStill)
{
    BackdropScene scene("LKStarlightBackground { anchors.fill: parent }", {600, 400});
    auto &canvas = scene.canvas<LKStarlightCanvas>();
    EXPECT_TRUE(canvas.isMoving());
    scene.scene().root()->setVisible(false);
    EXPECT_FALSE(canvas.isMoving());
    scene.scene().root()->setVisible(true);
    EXPECT_TRUE(canvas.isMoving());
    scene.window().hide();
    EXPECT_FALSE(canvas.isMoving());
    scene.window().show();
    EXPECT_TRUE(canvas.isMoving());
}

TEST(Backdrop, AClickOverAControlBothActivatesItAndStartsARipple)
{
    Scene scene("import QtQuick\nimport Larkspan.Design\n"
                "LKKineticGrid { anchors.fill: parent; LKButton { title: 'Go'; x: 100; y: 100 } }");
    const auto *canvas = scene.root()->findChild<LKKineticGridCanvas *>();
    QSignalSpy activated(findShown(scene.root(), u"Go"_s), SIGNAL(activated()));
    scene.click(u"Go"_s);
    EXPECT_EQ(activated.count(), 1);
    EXPECT_EQ(canvas->grid().ripples().size(), 1U);
}

TEST(Backdrop, APointerFarOutsideIsNotFollowedAndDoesNotClick)
{
    Scene scene("import QtQuick\nimport Larkspan.Design\n"
                "Item { anchors.fill: parent; LKKineticGrid { x: 100; y: 100; width: 200; height: 200 } }");
    auto *canvas = scene.root()->findChild<LKKineticGridCanvas *>();
    QTest::mouseMove(&scene.window(), {150, 150});
    EXPECT_TRUE(waitUntil([&] { return canvas->grid().mouse().x() > 0; }));
    QTest::mouseMove(&scene.window(), {500, 350});
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {500, 350});
    EXPECT_TRUE(canvas->grid().ripples().empty());
    EXPECT_TRUE(waitUntil([&] { return canvas->grid().mouse().x() < -9000; }));
}

TEST(Backdrop, AHundredClicksASecondAreAllDrawnAndAllOver)
{
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", usual);
    auto &canvas = scene.canvas<LKKineticGridCanvas>();
    for (int click = 0; click < 200; ++click) {
        scene.time = click / 100.0;
        QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {200 + click * 4, 400});
    }
    EXPECT_GE(canvas.grid().ripples().size(), 80U);
    const GridMesh mesh = GridMesh::filling(usual.width(), usual.height());
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column <= mesh.columns; ++column) {
            const GridPoint point = canvas.grid().warp(mesh, column, row, scene.time);
            ASSERT_TRUE(std::isfinite(point.x) && std::isfinite(point.y));
        }
    }
    (void)scene.picture(u"grid-clicks"_s);
    scene.time = 4.0;
    EXPECT_TRUE(waitUntil([&] { return canvas.grid().ripples().empty(); }));
}

TEST(Backdrop, TimeThatJumpsForwardOrBackLeavesNothingBehind)
{
    BackdropScene grid("LKKineticGrid { anchors.fill: parent }", {600, 400});
    auto &canvas = grid.canvas<LKKineticGridCanvas>();
    for (const double jump : {1e9, -1e9}) {
        canvas.click({300, 200});
        grid.time += jump;
        EXPECT_TRUE(waitUntil([&] { return canvas.grid().ripples().empty(); })) << jump;
    }
    EXPECT_TRUE(waitUntil([&] { return !canvas.isMoving(); }));
    expectAlike(grid.picture(u"grid-jumped"_s), paintedGrid(canvas.grid(), {600, 400}, grid.time));
}

TEST(Backdrop, StarlightFollowsTimeThatJumps)
{
    BackdropScene scene("LKStarlightBackground { anchors.fill: parent }", {600, 400});
    for (const double seconds : {3.0, 86400.0, 1.0}) {
        scene.time = seconds;
        expectAlike(scene.picture(u"starlight-jumped"_s), paintedStarlight(seconds, {600, 400}));
    }
}
