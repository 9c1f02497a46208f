#include <cmath>
#include <utility>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "design/LK.h"
#include "design/LKElapsed.h"
#include "design/LKHalo.h"
#include "design/LKShown.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

std::string transparentPage(const std::string &body)
{
    return "import QtQuick\nimport Larkspan.Design\nItem { width: 600; height: 400\n" + body + "\n}";
}

double number(const QObject *object, const char *property)
{
    return object->property(property).toDouble();
}

// The same surroundings for every test, whatever the one before it left.
class Surfaces : public testing::Test
{
protected:
    ~Surfaces() override
    {
        LK::instance().setBoringMode(false);
        LK::instance().setReducedMotion(false);
    }
};

using SpotlightCard = Surfaces;
using AIGlow = Surfaces;
using LoadingState = Surfaces;
using Shown = Surfaces;

const std::string card =
    transparentPage("LKSpotlightCard { objectName: 'card'; x: 100; y: 100; width: 280; height: 180;"
                    "LKButton { x: 20; y: 20; title: 'Open' } }");

QList<QQuickItem *> cellsOf(const QQuickItem *mark)
{
    QList<QQuickItem *> cells;
    for (QQuickItem *child : mark->childItems()) {
        if (child->inherits("QQuickRectangle")) {
            cells.append(child);
        }
    }
    return cells;
}

} // namespace

TEST_F(SpotlightCard, LightsUnderThePointerAndGoesOutWhenItLeaves)
{
    Scene scene(card);
    const QQuickItem *spotlit = findNamed(scene.root(), u"card"_s);
    QTest::mouseMove(&scene.window(), {590, 390});
    EXPECT_EQ(number(spotlit, "strength"), 0);
    QTest::mouseMove(&scene.window(), {350, 200});
    EXPECT_TRUE(waitUntil([&] { return number(spotlit, "strength") == 1; }));
    EXPECT_TRUE(spotlit->property("hasPointer").toBool());
    QTest::mouseMove(&scene.window(), {590, 390});
    EXPECT_TRUE(waitUntil([&] { return number(spotlit, "strength") == 0; }));
    EXPECT_FALSE(spotlit->property("hasPointer").toBool());
}

TEST_F(SpotlightCard, TurnsFromAccentToInfoAsThePointerCrosses)
{
    Scene scene(card);
    const QQuickItem *spotlit = findNamed(scene.root(), u"card"_s);
    const auto light = [&] { return spotlit->property("lightColor").value<QColor>().rgba(); };
    QTest::mouseMove(&scene.window(), {100, 200});
    EXPECT_TRUE(waitUntil([&] { return light() == LK::instance().palette().accent.rgba(); }));
    QTest::mouseMove(&scene.window(), {379, 200});
    EXPECT_TRUE(waitUntil([&] { return qAbs(qRed(light()) - LK::instance().palette().info.red()) <= 1; }));
}

TEST_F(SpotlightCard, KeepsItsLightOverAControlThatLiesOnIt)
{
    Scene scene(card);
    const QQuickItem *spotlit = findNamed(scene.root(), u"card"_s);
    QTest::mouseMove(&scene.window(), {350, 200});
    EXPECT_TRUE(waitUntil([&] { return number(spotlit, "strength") == 1; }));
    const QQuickItem *button = findShown(scene.root(), u"Open"_s);
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_TRUE(waitUntil([&] { return button->property("hovered").toBool(); }));
    EXPECT_TRUE(spotlit->property("hasPointer").toBool());
}

TEST_F(SpotlightCard, NeverLightsWhenItIsNotActive)
{
    Scene scene(transparentPage("LKSpotlightCard { objectName: 'card'; width: 280; height: 180; active: false }"));
    const QQuickItem *spotlit = findNamed(scene.root(), u"card"_s);
    QSignalSpy changes(spotlit, SIGNAL(strengthChanged()));
    for (int x = 0; x < 280; x += 20) {
        QTest::mouseMove(&scene.window(), {x, 90});
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(spotlit->property("hasPointer").toBool());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(SpotlightCard, DropsItsLightAtOnceInBoringModeAndThePointerWithItsNextMove)
{
    Scene scene(card);
    const QQuickItem *spotlit = findNamed(scene.root(), u"card"_s);
    QTest::mouseMove(&scene.window(), {350, 200});
    EXPECT_TRUE(waitUntil([&] { return number(spotlit, "strength") == 1; }));
    LK::instance().setBoringMode(true);
    EXPECT_EQ(number(spotlit, "strength"), 0);
    QTest::mouseMove(&scene.window(), {340, 200});
    EXPECT_TRUE(waitUntil([&] { return !spotlit->property("hasPointer").toBool(); }));
}

TEST_F(SpotlightCard, TakesTheSizeOfItsContentWhereNoneIsGiven)
{
    Scene scene(transparentPage("LKSpotlightCard { objectName: 'card'; Item { width: 120; height: 50 } }"));
    EXPECT_EQ(findNamed(scene.root(), u"card"_s)->size(), QSizeF(120, 50));
}

TEST(HaloImage, IsABlurOfTheRectangle)
{
    const QList<QColor> white{Qt::white, Qt::white};
    const QImage image = haloImage({120, 60}, 8, 6, white);
    const double reach = haloReach(6);
    EXPECT_EQ(reach, 18);
    EXPECT_EQ(image.size(), QSize(78, 48)); // a pixel for every two points
    EXPECT_EQ(qAlpha(image.pixel(39, 24)), 255);
    // Half as strong where the edge was.
    EXPECT_NEAR(qAlpha(image.pixel(39, 8)) + qAlpha(image.pixel(39, 9)), 255, 2);
    EXPECT_LE(qAlpha(image.pixel(0, 0)), 1);
    // Blurring only spreads the light: the sum stays.
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += qAlpha(image.pixel(x, y)) / 255.0;
        }
    }
    const double area = (120 * 60 - (4 - M_PI) * 8 * 8) / 4;
    EXPECT_NEAR(sum / area, 1, 0.01);
}

TEST(HaloImage, IsNothingForAnEmptyRectangleWithoutABlur)
{
    EXPECT_TRUE(haloImage({0, 0}, 4, 0, {Qt::white, Qt::white}).isNull());
}

TEST_F(AIGlow, BreathesWhileItIsActive)
{
    Scene scene(transparentPage("LKAIGlowModifier { objectName: 'glow'; LKButton { title: 'Sort' } }"));
    QQuickItem *glow = findNamed(scene.root(), u"glow"_s);
    EXPECT_FALSE(glow->property("breathing").toBool());
    EXPECT_FALSE(glow->findChild<LKHalo *>()->isVisible());
    glow->setProperty("active", true);
    EXPECT_TRUE(glow->property("breathing").toBool());
    EXPECT_TRUE(glow->findChild<LKHalo *>()->isVisible());
    EXPECT_TRUE(waitUntil([&] { return number(glow, "breath") > 0.1; }));
    glow->setProperty("active", false);
    EXPECT_EQ(number(glow, "breath"), 0);
}

TEST_F(AIGlow, GoesFromFaintToFullAndGrowsWithIt)
{
    Scene scene(transparentPage("LKAIGlowModifier { objectName: 'glow'; active: true; LKButton { title: 'Sort' } }"));
    const QQuickItem *glow = findNamed(scene.root(), u"glow"_s);
    const auto *halo = glow->findChild<LKHalo *>();
    EXPECT_TRUE(waitUntil([&] { return number(glow, "breath") > 0.9; }));
    EXPECT_DOUBLE_EQ(halo->opacity(), std::lerp(0.18, 0.55, number(glow, "breath")));
    EXPECT_DOUBLE_EQ(halo->scale(), std::lerp(1.02, 1.09, number(glow, "breath")));
    EXPECT_EQ(halo->cornerRadius(), number(glow, "cornerRadius") + 2);
}

TEST_F(AIGlow, GoesBackToFaintAsSlowlyAsItCame)
{
    Scene scene(transparentPage("LKAIGlowModifier { objectName: 'glow'; active: true; LKButton { title: 'Sort' } }"));
    const QQuickItem *glow = findNamed(scene.root(), u"glow"_s);
    double last = 0;
    EXPECT_TRUE(waitUntil([&] {
        const double before = std::exchange(last, number(glow, "breath"));
        return last < before && last > 0.2 && last < 0.8;
    }));
}

TEST_F(AIGlow, IsStillAndFaintInBoringMode)
{
    LK::instance().setBoringMode(true);
    Scene scene(transparentPage("LKAIGlowModifier { objectName: 'glow'; active: true; LKButton { title: 'Sort' } }"));
    const QQuickItem *glow = findNamed(scene.root(), u"glow"_s);
    const auto *halo = glow->findChild<LKHalo *>();
    EXPECT_FALSE(glow->property("breathing").toBool());
    EXPECT_TRUE(halo->isVisible());
    EXPECT_DOUBLE_EQ(halo->opacity(), 0.18);
    EXPECT_DOUBLE_EQ(halo->scale(), 1.02);
}

TEST_F(LoadingState, ShowsItsMessagesInTurn)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one', 'two'] }"));
    const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    EXPECT_NE(findShown(scene.root(), u"one"_s), nullptr);
    EXPECT_TRUE(waitUntil([&] { return loading->property("message") == u"two"_s; }));
    EXPECT_NE(findShown(scene.root(), u"two"_s), nullptr);
    EXPECT_TRUE(waitUntil([&] { return loading->property("message") == u"one"_s; }));
}

TEST_F(LoadingState, NeverChangesItsTextWithOneMessage)
{
    Scene scene(transparentPage("Item { LKLoadingState { objectName: 'one'; messages: ['only'] }"
                                "LKLoadingState { objectName: 'two'; messages: ['a', 'b'] } }"));
    const QQuickItem *one = findNamed(scene.root(), u"one"_s);
    const QQuickItem *two = findNamed(scene.root(), u"two"_s);
    QSignalSpy changes(one, SIGNAL(messageChanged()));
    EXPECT_TRUE(waitUntil([&] { return two->property("message") == u"b"_s; })); // so long have both been shown
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(one->property("message"), u"only"_s);
}

TEST_F(LoadingState, ShowsTheEmptyStringForAnEmptyList)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading' }"));
    QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    EXPECT_EQ(loading->property("message"), QString());
    loading->setProperty("messages", QStringList{u"now"_s});
    EXPECT_EQ(loading->property("message"), u"now"_s);
    loading->setProperty("messages", QStringList());
    EXPECT_EQ(loading->property("message"), QString());
}

TEST_F(LoadingState, StartsOverWhenTheListGetsShorterThanWhereItIs)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one', 'two', 'three'] }"));
    QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    loading->setProperty("messageIndex", 2);
    EXPECT_EQ(loading->property("message"), u"three"_s);
    loading->setProperty("messages", QStringList{u"alone"_s});
    EXPECT_EQ(loading->property("message"), u"alone"_s);
}

TEST_F(LoadingState, PulsesItsCellsAndLetsAGleamCrossTheText)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one'] }"));
    const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    const QList<QQuickItem *> cells = cellsOf(loading->childItems().constFirst());
    ASSERT_EQ(cells.size(), 9);
    EXPECT_TRUE(waitUntil([&] { return loading->property("animating").toBool(); }));
    for (const QQuickItem *cell : cells) {
        EXPECT_EQ(cell->size(), QSizeF(4, 4));
        EXPECT_TRUE(waitUntil([&] { return cell->opacity() > 0.9; }));
        EXPECT_TRUE(waitUntil([&] { return cell->opacity() < 0.3; }));
    }
    EXPECT_TRUE(waitUntil([&] { return number(loading, "phase") > 0.5; }));
}

TEST_F(LoadingState, StartsItsCellsAsAChevron)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one'] }"));
    const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    std::vector<int> delays;
    for (const QQuickItem *cell : cellsOf(loading->childItems().constFirst())) {
        for (const QObject *part : cell->findChildren<QObject *>()) {
            if (part->inherits("QQuickPauseAnimation")) {
                delays.push_back(part->property("duration").toInt());
            } else if (part->inherits("QQuickNumberAnimation")) {
                EXPECT_EQ(part->property("duration").toInt(), 325);
            }
        }
    }
    EXPECT_EQ(delays, (std::vector{90, 180, 270, 0, 90, 180, 90, 180, 270}));
}

TEST_F(LoadingState, FadesFromOneMessageToTheNextAndWithoutMotionReplacesIt)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one', 'two', 'three'] }"));
    QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    EXPECT_TRUE(waitUntil([&] { return loading->property("animating").toBool(); }));
    const auto opacityOf = [&](const QString &text) {
        const QQuickItem *found = findShown(scene.root(), text);
        return found ? found->opacity() : 0.0;
    };
    loading->setProperty("messageIndex", 1);
    EXPECT_TRUE(waitUntil([&] { return opacityOf(u"two"_s) > 0.1; }));
    if (const double two = opacityOf(u"two"_s); two < 1) {
        EXPECT_DOUBLE_EQ(opacityOf(u"one"_s), 1 - two);
    }
    EXPECT_TRUE(waitUntil([&] { return opacityOf(u"two"_s) == 1; }));
    EXPECT_EQ(opacityOf(u"one"_s), 0);
    // Without motion from the middle of a turn on.
    loading->setProperty("messageIndex", 2);
    EXPECT_LT(opacityOf(u"three"_s), 1);
    LK::instance().setReducedMotion(true);
    loading->setProperty("messageIndex", 0);
    EXPECT_EQ(opacityOf(u"one"_s), 1);
    EXPECT_EQ(opacityOf(u"three"_s), 0);
}

TEST_F(LoadingState, IsStillWithReducedMotionAndInBoringMode)
{
    for (const bool boring : {true, false}) {
        LK::instance().setBoringMode(boring);
        LK::instance().setReducedMotion(!boring);
        Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one', 'two'] }"));
        const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
        EXPECT_FALSE(loading->property("animating").toBool());
        EXPECT_TRUE(waitUntil([&] { return loading->property("message") == u"two"_s; }));
        for (const QQuickItem *cell : cellsOf(loading->childItems().constFirst())) {
            EXPECT_DOUBLE_EQ(cell->opacity(), 0.14);
        }
        EXPECT_EQ(number(loading, "phase"), 0);
    }
}

TEST_F(LoadingState, StopsAndStartsMovingWithTheDesktopsWish)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one'] }"));
    const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    const QQuickItem *cell = cellsOf(loading->childItems().constFirst()).at(3);
    EXPECT_TRUE(waitUntil([&] { return cell->opacity() > 0.5; }));
    LK::instance().setReducedMotion(true);
    EXPECT_FALSE(loading->property("animating").toBool());
    EXPECT_DOUBLE_EQ(cell->opacity(), 0.14);
    LK::instance().setReducedMotion(false);
    EXPECT_TRUE(waitUntil([&] { return cell->opacity() > 0.5; }));
}

TEST_F(LoadingState, RoundsItsCellsWhenAsked)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; round: true }"));
    const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    for (const QQuickItem *cell : cellsOf(loading->childItems().constFirst())) {
        EXPECT_EQ(number(cell, "radius"), 2);
    }
}

TEST_F(LoadingState, KeepsItsClockAcrossAChangeOfMessageAndAHiding)
{
    Scene scene(transparentPage("LKLoadingState { objectName: 'loading'; messages: ['one'] }"));
    QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    const auto seconds = [&] { return loading->property("elapsed").toString().chopped(1).toDouble(); };
    EXPECT_TRUE(waitUntil([&] { return seconds() >= 0.3; }));
    loading->setProperty("messages", QStringList{u"two"_s});
    EXPECT_GE(seconds(), 0.3);
    loading->setVisible(false);
    loading->setVisible(true);
    EXPECT_GE(seconds(), 0.3);
}

TEST(Elapsed, FollowsTheClockOnlyWhileItRuns)
{
    LKElapsed clock;
    QSignalSpy changes(&clock, &LKElapsed::textChanged);
    clock.setRunning(true);
    EXPECT_TRUE(waitUntil([&] { return changes.count() >= 3; }));
    clock.setRunning(false);
    changes.clear();
    LKElapsed other;
    const QSignalSpy changesOfOther(&other, &LKElapsed::textChanged);
    other.setRunning(true);
    EXPECT_TRUE(waitUntil([&] { return changesOfOther.count() >= 4; }));
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(Shown, IsFalseWithAnythingHiddenThatTheItemLiesIn)
{
    Scene scene(transparentPage("Item { objectName: 'outer'; Item { objectName: 'inner'; width: 1; height: 1;"
                                "property bool shown: LKShown.now } }"));
    const QQuickItem *inner = findNamed(scene.root(), u"inner"_s);
    EXPECT_TRUE(waitUntil([&] { return inner->property("shown").toBool(); }));
    findNamed(scene.root(), u"outer"_s)->setVisible(false);
    EXPECT_FALSE(inner->property("shown").toBool());
    findNamed(scene.root(), u"outer"_s)->setVisible(true);
    EXPECT_TRUE(inner->property("shown").toBool());
    scene.window().hide();
    EXPECT_TRUE(waitUntil([&] { return !inner->property("shown").toBool(); }));
    scene.window().show();
    EXPECT_TRUE(waitUntil([&] { return inner->property("shown").toBool(); }));
}

TEST_F(Shown, FollowsTheItemIntoAnotherWindow)
{
    Scene scene(transparentPage("Item { objectName: 'item'; property bool shown: LKShown.now }"));
    QQuickItem *item = findNamed(scene.root(), u"item"_s);
    EXPECT_TRUE(waitUntil([&] { return item->property("shown").toBool(); }));
    QQuickWindow hidden;
    item->setParentItem(hidden.contentItem());
    EXPECT_FALSE(item->property("shown").toBool());
    item->setParentItem(scene.root());
    EXPECT_TRUE(item->property("shown").toBool());
}
