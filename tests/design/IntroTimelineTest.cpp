#include <algorithm>

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
// What the house curve has covered half-way through its time.
constexpr double houseHalf = 0.946079;

} // namespace

TEST(IntroTimeline, EachFlagIsSetOnceAtItsTimeAndOnlyTheBladeGoesAgain)
{
    EXPECT_EQ(flagsAt(-0.01), IntroFlags{});
    IntroFlags flags{.stripIn = true};
    EXPECT_EQ(flagsAt(0.0), flags);
    EXPECT_EQ(flagsAt(0.339), flags);
    flags.scrub = true;
    EXPECT_EQ(flagsAt(0.34), flags);
    EXPECT_EQ(flagsAt(1.699), flags);
    flags.bladeDrop = flags.bladeVisible = true;
    EXPECT_EQ(flagsAt(1.7), flags);
    EXPECT_EQ(flagsAt(1.979), flags);
    flags.halvesOpen = true;
    EXPECT_EQ(flagsAt(1.98), flags);
    flags.bladeVisible = false;
    EXPECT_EQ(flagsAt(2.0), flags);
    EXPECT_EQ(flagsAt(2.249), flags);
    flags.iconIn = true;
    EXPECT_EQ(flagsAt(2.25), flags);
    EXPECT_EQ(flagsAt(4.299), flags);
    flags.fadingOut = true;
    EXPECT_EQ(flagsAt(4.3), flags);
    EXPECT_EQ(flagsAt(1e9), flags);
}

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

TEST(IntroView, PlaysInFullInBoringModeChimesOnceAndEndsOnce)
{
    LK::instance().setBoringMode(true);
    Scene scene("import Larkspan.Design\nIntroView { anchors.fill: parent }");
    const QSignalSpy chimes(scene.root(), SIGNAL(chimeDue()));
    const QSignalSpy ends(scene.root(), SIGNAL(finished()));
    EXPECT_TRUE(waitUntil([&] { return chimes.count() == 1; }));
    EXPECT_GE(scene.root()->property("seconds").toDouble(), 2.0);
    EXPECT_EQ(ends.count(), 0);
    EXPECT_TRUE(waitUntil([&] { return ends.count() == 1; }));
    EXPECT_EQ(scene.root()->property("seconds").toDouble(), 4.98);
    EXPECT_EQ(scene.root()->opacity(), 0.0);
    EXPECT_EQ(chimes.count(), 1);
    LK::instance().setBoringMode(false);
}

TEST(IntroView, BeginsWithoutAFrameWhereNoneIsDrawn)
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
    const QQuickItem *left = findNamed(scene.root(), u"leftHalf"_s);
    const QQuickItem *right = findNamed(scene.root(), u"rightHalf"_s);
    EXPECT_EQ(left->width(), 352);
    EXPECT_EQ(left->mapToScene({352, 0}), right->mapToScene({0, 0}));
    EXPECT_EQ(left->mapToScene({352, 0}).x(), 590);
    // The same frame of the one and of the other lie on the same spot.
    const QQuickItem *framesOfLeft = left->childItems().first();
    const QQuickItem *framesOfRight = right->childItems().first();
    EXPECT_EQ(framesOfLeft->width(), 968);
    EXPECT_EQ(framesOfLeft->mapToScene({}), framesOfRight->mapToScene({}));
}
