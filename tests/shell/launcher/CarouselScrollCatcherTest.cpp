#include <QtGui/QWheelEvent>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/QSignalSpy>

#include "shell/launcher/CarouselScrollCatcher.h"
#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Over the left half of what would scroll by itself.
class CarouselScrollCatcherTest : public testing::Test
{
protected:
    Scene scene{"import QtQuick\nimport Larkspan.Shell\n"
                "Item { anchors.fill: parent\n"
                "MouseArea { objectName: 'below'; anchors.fill: parent; property point scrolled\n"
                "onWheel: wheel => scrolled = Qt.point(scrolled.x + wheel.pixelDelta.x, "
                "scrolled.y + wheel.pixelDelta.y) }\n"
                "CarouselScrollCatcher { width: 300; height: 400 } }"};
    CarouselScrollCatcher &catcher = *scene.root()->findChild<CarouselScrollCatcher *>();
    const QQuickItem &below = *findNamed(scene.root(), u"below"_s);
    QSignalSpy drifts{&catcher, &CarouselScrollCatcher::drift};
    QSignalSpy commits{&catcher, &CarouselScrollCatcher::commit};
    QSignalSpy cancels{&catcher, &CarouselScrollCatcher::cancel};

    void wheel(QPoint pixels, Qt::ScrollPhase phase, QPointF at = {150, 200})
    {
        QWheelEvent event(at, at, pixels, pixels * 4, Qt::NoButton, Qt::NoModifier, phase, false);
        QCoreApplication::sendEvent(&scene.window(), &event);
    }
    [[nodiscard]] QPointF scrolledBelow() const { return below.property("scrolled").toPointF(); }
    void notch(QPoint angle, QPointF at = {150, 200})
    {
        QWheelEvent event(at, at, {}, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&scene.window(), &event);
    }
};

} // namespace

TEST_F(CarouselScrollCatcherTest, SwallowsASidewaysSwipeBeforeWhatLiesBelowScrolls)
{
    wheel({}, Qt::ScrollBegin);
    wheel({-40, 0}, Qt::ScrollUpdate);
    wheel({}, Qt::ScrollEnd);
    EXPECT_EQ(drifts.count(), 1);
    EXPECT_EQ(drifts.first().first().toDouble(), -40);
    EXPECT_EQ(cancels.count(), 1);
    EXPECT_EQ(scrolledBelow(), QPointF());
}

TEST_F(CarouselScrollCatcherTest, LetsAVerticalSwipeThroughToWhatLiesBelow)
{
    wheel({}, Qt::ScrollBegin);
    wheel({-5, -40}, Qt::ScrollUpdate);
    wheel({-5, -40}, Qt::ScrollUpdate);
    EXPECT_EQ(scrolledBelow(), QPointF(-10, -80));
    EXPECT_EQ(drifts.count(), 0);
    EXPECT_EQ(commits.count(), 0);
    wheel({}, Qt::ScrollEnd);
    EXPECT_EQ(cancels.count(), 0);
}

TEST_F(CarouselScrollCatcherTest, LetsWhatHappensOutsideOfItThrough)
{
    notch({-120, 0}, {450, 200});
    wheel({}, Qt::ScrollBegin, {450, 200});
    wheel({-90, 0}, Qt::ScrollUpdate, {450, 200});
    EXPECT_EQ(commits.count(), 0);
    EXPECT_EQ(scrolledBelow(), QPointF(-90, 0));
}

TEST_F(CarouselScrollCatcherTest, TakesUpASwipeThatBeganOutsideOfIt)
{
    wheel({}, Qt::ScrollBegin, {450, 200});
    wheel({-20, 0}, Qt::ScrollUpdate);
    wheel({}, Qt::ScrollEnd);
    EXPECT_EQ(drifts.count(), 1);
    EXPECT_EQ(cancels.count(), 1);
}

TEST_F(CarouselScrollCatcherTest, WatchesNothingWhileItIsHiddenDisabledOrInNoWindow)
{
    catcher.setEnabled(false);
    notch({-120, 0});
    catcher.setEnabled(true);
    catcher.setVisible(false);
    notch({-120, 0});
    catcher.setVisible(true);
    catcher.setParentItem(nullptr);
    notch({-120, 0});
    EXPECT_EQ(commits.count(), 0);
    catcher.setParentItem(scene.root());
    notch({-120, 0});
    EXPECT_EQ(commits.count(), 1);
}

TEST_F(CarouselScrollCatcherTest, DisabledInTheMiddleOfADriftItSpringsBack)
{
    wheel({}, Qt::ScrollBegin);
    wheel({-40, 0}, Qt::ScrollUpdate);
    catcher.setEnabled(false);
    EXPECT_EQ(cancels.count(), 1);
}
