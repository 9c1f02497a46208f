#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "design/LKKineticGridCanvas.h"
#include "design/MouseTracker.h"
#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// A tracker over a part of the window, below a control that takes all it gets.
class TrackerScene
{
public:
    // The display tells only of a pointer that moves: it may lie where the test before left it.
    TrackerScene() { QTest::mouseMove(&scene.window(), {5, 390}); }

    Scene scene{"import QtQuick\nimport Larkspan.Design\n"
                "Item { anchors.fill: parent\n"
                "MouseTracker { x: 100; y: 50; width: 200; height: 100 }\n"
                "MouseArea { objectName: 'above'; anchors.fill: parent; hoverEnabled: true } }"};
    MouseTracker &tracker = *scene.root()->findChild<MouseTracker *>();
    QSignalSpy moves{&tracker, &MouseTracker::move};
    QSignalSpy clicks{&tracker, &MouseTracker::click};
    QSignalSpy exits{&tracker, &MouseTracker::exit};
    QSignalSpy pressesAbove{findNamed(scene.root(), u"above"_s), SIGNAL(pressed(QQuickMouseEvent *))};
};

} // namespace

TEST(MouseTracker, SeesMovesInItsOwnCoordinatesAndTakesNothingFromWhatLiesAbove)
{
    TrackerScene tracked;
    QTest::mouseMove(&tracked.scene.window(), {150, 80});
    QTest::mouseClick(&tracked.scene.window(), Qt::LeftButton, {}, {150, 80});
    ASSERT_FALSE(tracked.moves.isEmpty());
    EXPECT_EQ(tracked.moves.last().first().toPointF(), QPointF(50, 30));
    ASSERT_EQ(tracked.clicks.count(), 1);
    EXPECT_EQ(tracked.clicks.first().first().toPointF(), QPointF(50, 30));
    EXPECT_EQ(tracked.pressesAbove.count(), 1);
}

TEST(MouseTracker, DoesNotSeeWhatHappensOutsideOfIt)
{
    TrackerScene tracked;
    QTest::mouseMove(&tracked.scene.window(), {20, 20});
    QTest::mouseClick(&tracked.scene.window(), Qt::LeftButton, {}, {20, 20});
    EXPECT_EQ(tracked.moves.count(), 0);
    EXPECT_EQ(tracked.clicks.count(), 0);
    EXPECT_EQ(tracked.exits.count(), 0);
}

TEST(MouseTracker, SaysOnceThatThePointerLeft)
{
    TrackerScene tracked;
    QTest::mouseMove(&tracked.scene.window(), {150, 80});
    QTest::mouseMove(&tracked.scene.window(), {20, 20});
    QTest::mouseMove(&tracked.scene.window(), {30, 30});
    EXPECT_EQ(tracked.exits.count(), 1);
    QTest::mouseMove(&tracked.scene.window(), {160, 80});
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&tracked.scene.window(), &leave);
    EXPECT_EQ(tracked.exits.count(), 2);
}

TEST(MouseTracker, CountsOnlyPressesOfTheLeftButtonAndEachOfAFastPair)
{
    TrackerScene tracked;
    QTest::mouseClick(&tracked.scene.window(), Qt::RightButton, {}, {150, 80});
    EXPECT_EQ(tracked.clicks.count(), 0);
    QTest::mouseDClick(&tracked.scene.window(), Qt::LeftButton, {}, {150, 80});
    EXPECT_EQ(tracked.clicks.count(), 2);
}

TEST(MouseTracker, DoesNotFollowADrag)
{
    TrackerScene tracked;
    QTest::mouseMove(&tracked.scene.window(), {150, 80});
    const auto followed = tracked.moves.count();
    QTest::mousePress(&tracked.scene.window(), Qt::LeftButton, {}, {150, 80});
    QTest::mouseMove(&tracked.scene.window(), {180, 90});
    QTest::mouseMove(&tracked.scene.window(), {20, 20});
    EXPECT_EQ(tracked.moves.count(), followed);
    EXPECT_EQ(tracked.exits.count(), 0);
    QTest::mouseRelease(&tracked.scene.window(), Qt::LeftButton, {}, {20, 20});
    QTest::mouseMove(&tracked.scene.window(), {190, 90});
    EXPECT_EQ(tracked.moves.count(), followed + 1);
}

TEST(MouseTracker, SeesNothingWhileItIsDisabledOrHidden)
{
    TrackerScene tracked;
    QTest::mouseMove(&tracked.scene.window(), {150, 80});
    tracked.tracker.setEnabled(false);
    EXPECT_EQ(tracked.exits.count(), 1);
    QTest::mouseClick(&tracked.scene.window(), Qt::LeftButton, {}, {151, 80});
    tracked.tracker.setEnabled(true);
    tracked.tracker.setVisible(false);
    QTest::mouseClick(&tracked.scene.window(), Qt::LeftButton, {}, {152, 80});
    EXPECT_EQ(tracked.clicks.count(), 0);
}

TEST(MouseTracker, LetsGoOfAWindowThatItLeaves)
{
    TrackerScene tracked;
    tracked.tracker.setParentItem(nullptr);
    QTest::mouseClick(&tracked.scene.window(), Qt::LeftButton, {}, {150, 80});
    EXPECT_EQ(tracked.clicks.count(), 0);
}

TEST(Backdrops, WithoutAGraphicsInterfaceOnlyTheirBackgroundIsShown)
{
    for (const char *type : {"LKKineticGrid", "LKStarlightBackground"}) {
        Scene scene(std::string("import Larkspan.Design\n") + type + " { anchors.fill: parent }");
        QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {150, 80});
        const QImage shown = scene.window().grabWindow();
        EXPECT_EQ(shown.pixelColor(150, 80), LK::instance().palette().surfaceWindow);
    }
}
