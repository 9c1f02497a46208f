#include <algorithm>
#include <memory>

#include <QtQml/QQmlComponent>
#include <QtTest/QSignalSpy>

#include "design/IntroSequence.h"
#include "design/LK.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace larkspan::introTimeline;
using namespace Qt::Literals::StringLiterals;

namespace {

// The curves are solved to about this.
constexpr double tolerance = 1e-3;
// The part of the house curve's way that is covered after half of its time.
constexpr double houseHalf = 0.946079;

} // namespace

TEST(IntroTimeline, BeginsWithNothingShown)
{
    const IntroLook begin{};
    EXPECT_EQ(lookAt(0.0), begin);
    EXPECT_EQ(lookAt(-5.0), begin);
}

TEST(IntroTimeline, TheStripEntersAndGrows)
{
    EXPECT_NEAR(lookAt(0.26).stripOpacity, houseHalf, tolerance);
    EXPECT_NEAR(lookAt(0.26).stripScale, 0.7 + 0.3 * houseHalf, tolerance);
    EXPECT_NEAR(lookAt(0.52).stripOpacity, 1.0, tolerance);
    EXPECT_NEAR(lookAt(0.52).stripScale, 1.0, tolerance);
}

TEST(IntroTimeline, TheScrubStartsSlowlyAndIsStillAcceleratingWhenItEnds)
{
    EXPECT_EQ(lookAt(0.34).scrub, 0.0);
    EXPECT_NEAR(lookAt(1.09).scrub, -25.9535, 0.2);
    EXPECT_NEAR(lookAt(1.7).scrub, -119.2449, 0.2);
    EXPECT_NEAR(lookAt(1.84).scrub, -176.0, tolerance);
    const auto speed = [](double seconds) { return lookAt(seconds).scrub - lookAt(seconds + 0.05).scrub; };
    EXPECT_GT(speed(1.79), speed(1.7));
    EXPECT_GT(speed(1.7), speed(1.5));
    EXPECT_GT(speed(1.5), speed(0.5));
}

TEST(IntroTimeline, TheBladeIsThereAtOnceFallsAndFades)
{
    EXPECT_EQ(lookAt(1.699).bladeOpacity, 0.0);
    EXPECT_EQ(lookAt(1.7).bladeOpacity, 1.0);
    EXPECT_EQ(lookAt(1.7).bladeY, -210.0);
    EXPECT_EQ(lookAt(2.0).bladeOpacity, 1.0);
    EXPECT_NEAR(lookAt(2.01).bladeY, 48.6301, 0.3);
    EXPECT_NEAR(lookAt(2.15).bladeOpacity, 1 - houseHalf, tolerance);
    EXPECT_NEAR(lookAt(2.3).bladeOpacity, 0.0, tolerance);
    EXPECT_NEAR(lookAt(2.32).bladeY, 60.0, tolerance);
}

TEST(IntroTimeline, TheHalvesSwingApartAndFade)
{
    EXPECT_EQ(lookAt(1.98).halfShift, 0.0);
    EXPECT_NEAR(lookAt(2.26).halfShift, 216 * houseHalf, 216 * tolerance);
    EXPECT_NEAR(lookAt(2.26).halfAngle, 7 * houseHalf, 7 * tolerance);
    EXPECT_NEAR(lookAt(2.26).stripOpacity, 1 - houseHalf, tolerance);
    EXPECT_NEAR(lookAt(2.54).halfShift, 216.0, tolerance);
    EXPECT_NEAR(lookAt(2.54).halfAngle, 7.0, tolerance);
    EXPECT_NEAR(lookAt(2.54).stripOpacity, 0.0, tolerance);
}

TEST(IntroTimeline, TheIconAppearsWhileTheStripIsFading)
{
    EXPECT_EQ(lookAt(2.25).iconOpacity, 0.0);
    EXPECT_EQ(lookAt(2.25).iconScale, 0.55);
    EXPECT_GT(lookAt(2.25).stripOpacity, 0.0);
    EXPECT_LT(lookAt(2.25).stripOpacity, 1.0);
}

TEST(IntroTimeline, TheIconOvershootsAndSettlesLikeASpring)
{
    EXPECT_NEAR(lookAt(2.39).iconScale, 0.917330, tolerance);
    EXPECT_NEAR(lookAt(2.53).iconScale, 1.039330, tolerance);
    EXPECT_NEAR(lookAt(2.67).iconScale, 1.026841, tolerance);
    double largest = 0.0;
    for (double seconds = 2.25; seconds < 2.81; seconds += 0.001) {
        largest = std::max(largest, lookAt(seconds).iconScale);
        EXPECT_LE(lookAt(seconds).iconOpacity, 1.0); // nothing is more than there
    }
    EXPECT_NEAR(largest, 1.044012, tolerance);
    EXPECT_NEAR(lookAt(2.81).iconScale, 1.0, tolerance);
    EXPECT_NEAR(lookAt(2.81).iconOpacity, 1.0, tolerance);
}

TEST(IntroTimeline, TheWholeFadesBeforeItEnds)
{
    EXPECT_EQ(lookAt(4.3).opacity, 1.0);
    EXPECT_NEAR(lookAt(4.625).opacity, 1 - houseHalf, tolerance);
    EXPECT_NEAR(lookAt(4.95).opacity, 0.0, tolerance);
    EXPECT_EQ(finish, 4.98);
}

TEST(IntroSequence, TheChimeIsDueOnceWhenTheIconAppearsAndTheEndOnceAfterTheFade)
{
    IntroSequence sequence;
    const QSignalSpy chimes(&sequence, &IntroSequence::chimeDue);
    const QSignalSpy ends(&sequence, &IntroSequence::finished);
    sequence.playTo(2.249);
    EXPECT_EQ(chimes.count(), 0);
    sequence.playTo(2.25);
    EXPECT_EQ(chimes.count(), 1);
    sequence.playTo(4.979);
    EXPECT_EQ(ends.count(), 0);
    sequence.playTo(4.98);
    EXPECT_EQ(ends.count(), 1);
    sequence.playTo(6.0);
    EXPECT_EQ(sequence.seconds(), 4.98);
    EXPECT_EQ(chimes.count(), 1);
    EXPECT_EQ(ends.count(), 1);
}

TEST(IntroSequence, AFrameThatComesLateMissesNeitherTheChimeNorTheEnd)
{
    IntroSequence sequence;
    const QSignalSpy chimes(&sequence, &IntroSequence::chimeDue);
    const QSignalSpy ends(&sequence, &IntroSequence::finished);
    sequence.playTo(60.0);
    EXPECT_EQ(chimes.count(), 1);
    EXPECT_EQ(ends.count(), 1);
}

TEST(IntroView, PlaysInFullInBoringModeChimesOnceAndEndsOnce)
{
    LK::instance().setBoringMode(true);
    Scene scene("import Larkspan.Design\nIntroView { anchors.fill: parent }");
    const QSignalSpy chimes(scene.root(), SIGNAL(chimeDue()));
    const QSignalSpy ends(scene.root(), SIGNAL(finished()));
    EXPECT_TRUE(waitUntil([&] { return chimes.count() == 1; }));
    EXPECT_TRUE(waitUntil([&] { return ends.count() == 1; }));
    EXPECT_EQ(scene.root()->property("seconds").toDouble(), 4.98);
    EXPECT_EQ(scene.root()->opacity(), 0.0);
    EXPECT_EQ(chimes.count(), 1);
    LK::instance().setBoringMode(false);
}

TEST(IntroView, PlaysInFullWithReducedMotionToo)
{
    LK::instance().setReducedMotion(true);
    Scene scene("import Larkspan.Design\nIntroView { anchors.fill: parent }");
    const QSignalSpy ends(scene.root(), SIGNAL(finished()));
    const QQuickItem *icon = findNamed(scene.root(), u"icon"_s);
    EXPECT_TRUE(waitUntil([&] { return icon->scale() > 1.01; })); // past its end, like a spring
    EXPECT_TRUE(waitUntil([&] { return ends.count() == 1; }));
    EXPECT_EQ(scene.root()->property("seconds").toDouble(), 4.98);
    LK::instance().setReducedMotion(false);
}

TEST(IntroView, BeginsOnceItsFirstPictureIsOnTheScreen)
{
    Scene scene("import QtQuick\nimport Larkspan.Design\n"
                "Loader { anchors.fill: parent; active: false; sourceComponent: IntroView {} }");
    int pictures = 0;
    QObject::connect(&scene.window(), &QQuickWindow::afterRendering, scene.root(), [&] { ++pictures; });
    int picturesBefore = -1;
    scene.root()->setProperty("active", true);
    const auto *sequence = scene.root()->findChild<IntroSequence *>();
    ASSERT_NE(sequence, nullptr);
    QObject::connect(sequence, &IntroSequence::hasStartedChanged, scene.root(), [&] { picturesBefore = pictures; });
    EXPECT_TRUE(waitUntil([&] { return sequence->hasStarted(); }));
    EXPECT_GE(picturesBefore, 1);
}

TEST(IntroView, PlaysInAWindowThatNobodySees)
{
    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    QQmlComponent component(&engine);
    component.setData("import Larkspan.Design\nIntroView {}", QUrl());
    const std::unique_ptr<QObject> intro(component.create());
    ASSERT_TRUE(intro) << component.errorString().toStdString();
    EXPECT_TRUE(waitUntil([&] { return intro->findChild<IntroSequence *>()->hasStarted(); }));
}

TEST(IntroSequence, StartsOnceAndFollowsTheClock)
{
    IntroSequence sequence;
    const QSignalSpy looks(&sequence, &IntroSequence::lookChanged);
    sequence.start();
    sequence.start();
    EXPECT_TRUE(sequence.hasStarted());
    EXPECT_TRUE(waitUntil([&] { return looks.count() > 2; }));
}

TEST(IntroView, ShowsOneStripThroughTwoWindowsThatAdjoin)
{
    Scene scene("import Larkspan.Design\nIntroView { anchors.fill: parent; plays: false }", {}, {1180, 790});
    scene.root()->setProperty("seconds", 1.5);
    QQuickItem *left = findNamed(scene.root(), u"leftHalf"_s);
    QQuickItem *right = findNamed(scene.root(), u"rightHalf"_s);
    EXPECT_EQ(left->width(), 352);
    EXPECT_EQ(left->mapToScene({352, 0}), right->mapToScene({0, 0}));
    EXPECT_EQ(left->mapToScene({352, 0}).x(), 590);
    // The same frame of the one and of the other lie on the same spot.
    const QQuickItem *framesOfLeft = findNamed(left, u"frames"_s);
    const QQuickItem *framesOfRight = findNamed(right, u"frames"_s);
    EXPECT_EQ(framesOfLeft->width(), 968);
    EXPECT_EQ(framesOfLeft->mapToScene({}), framesOfRight->mapToScene({}));
}

namespace {

struct Moment
{
    double seconds;
    double stripOpacity;
    double stripScale;
    double scrub;       // of the frames within their half
    double rightMiddle; // of the right half, from the window's middle
    double angle;       // of the right half
    double bladeOpacity;
    double bladeMiddle; // below the window's
    double iconOpacity;
    double iconScale;
    double opacity;
};

// In a window of 1180 × 790, worked out from the timeline and its curves by hand.
constexpr Moment eightMoments[] = {
    {0.1, 0.66572, 0.89972, 0, 158.351, 0, 0, -210, 0, 0.55, 1},
    {0.34, 0.98032, 0.9941, 0, 174.962, 0, 0, -210, 0, 0.55, 1},
    {1.0, 1, 1, -19.956, 176, 0, 0, -210, 0, 0.55, 1},
    {1.7, 1, 1, -119.245, 176, 0, 1, -210, 0, 0.55, 1},
    {1.9, 1, 1, -176, 176, 0, 1, 19.319, 0, 0.55, 1},
    {2.15, 0.16878, 1, -176, 355.544, 5.8185, 0.05392, 58.128, 0, 0.55, 1},
    {2.4, 0.00889, 1, -176, 390.079, 6.9378, 0, 60, 0.85127, 0.93307, 1},
    {4.5, 0, 1, -176, 392, 7, 0, 60, 1, 1, 0.16474},
};

} // namespace

TEST(IntroView, HasEverythingInItsPlaceAtEightMoments)
{
    constexpr double pointTolerance = 0.3;
    constexpr double shareTolerance = 2e-3;
    Scene scene("import Larkspan.Design\nIntroView { anchors.fill: parent; plays: false }", {}, {1180, 790});
    const QPointF middle(590, 395);
    const QQuickItem *strip = findNamed(scene.root(), u"strip"_s);
    const QQuickItem *left = findNamed(scene.root(), u"leftHalf"_s);
    const QQuickItem *right = findNamed(scene.root(), u"rightHalf"_s);
    const QQuickItem *blade = findNamed(scene.root(), u"blade"_s);
    const QQuickItem *icon = findNamed(scene.root(), u"icon"_s);
    const auto fromMiddle = [&](const QQuickItem *item) {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)) - middle;
    };
    for (const Moment &moment : eightMoments) {
        SCOPED_TRACE(moment.seconds);
        scene.root()->setProperty("seconds", moment.seconds);
        EXPECT_NEAR(strip->opacity(), moment.stripOpacity, shareTolerance);
        EXPECT_NEAR(strip->scale(), moment.stripScale, shareTolerance);
        EXPECT_NEAR(findNamed(scene.root(), u"frames"_s)->x(), moment.scrub, pointTolerance);
        EXPECT_NEAR(fromMiddle(right).x(), moment.rightMiddle, pointTolerance);
        EXPECT_NEAR(fromMiddle(right).y(), 0, pointTolerance);
        EXPECT_NEAR(fromMiddle(left).x(), -moment.rightMiddle, pointTolerance);
        EXPECT_NEAR(right->rotation(), moment.angle, pointTolerance / 10);
        EXPECT_NEAR(left->rotation(), -moment.angle, pointTolerance / 10);
        EXPECT_NEAR(blade->opacity(), moment.bladeOpacity, shareTolerance);
        EXPECT_NEAR(fromMiddle(blade).x(), 0, pointTolerance);
        EXPECT_NEAR(fromMiddle(blade).y(), moment.bladeMiddle, pointTolerance);
        EXPECT_EQ(fromMiddle(icon), QPointF());
        EXPECT_NEAR(icon->opacity(), moment.iconOpacity, shareTolerance);
        EXPECT_NEAR(icon->scale(), moment.iconScale, shareTolerance);
        EXPECT_NEAR(scene.root()->opacity(), moment.opacity, shareTolerance);
    }
}

TEST(IntroView, BrightensItsFramesTowardsTheAccentFrameAndDimsThemAfterIt)
{
    Scene scene("import Larkspan.Design\nIntroView { anchors.fill: parent; plays: false }", {}, {1180, 790});
    std::vector<double> opacities;
    for (const QQuickItem *frame : findNamed(scene.root(), u"frames"_s)->childItems()) {
        if (frame->width() != 82) {
            continue; // what repeats them
        }
        EXPECT_EQ(frame->height(), 96);
        EXPECT_EQ(frame->x(), 88.0 * static_cast<double>(opacities.size()));
        const auto color = frame->property("border").value<QObject *>()->property("color").value<QColor>();
        opacities.push_back(std::round(static_cast<double>(color.alphaF()) * 1000) / 1000);
        EXPECT_EQ(color.rgb(), opacities.size() == 8 ? LK::instance().palette().accent.rgb()
                                                     : LK::instance().palette().textPrimary.rgb());
    }
    // 0.3 + 0.4 × i / 7, the accent frame, 0.7 - 0.3 × (i - 7) / 3
    EXPECT_THAT(opacities, testing::ElementsAre(0.3, 0.357, 0.414, 0.471, 0.529, 0.586, 0.643, 1, 0.6, 0.5, 0.4));
}
