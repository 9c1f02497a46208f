#include <algorithm>

#include <QtGui/QWheelEvent>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/QTest>

#include "shell/launcher/CarouselScrollCatcher.h"
#include "shell/launcher/LKTool.h"
#include "shell/launcher/ToolTileSurface.h"
#include "tests/shell/launcher/LauncherState.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class HomeViewTest : public testing::Test
{
protected:
    LauncherState state;
    AppState &app = state.app;
    Scene scene{"import Larkspan.Shell\nHomeView { width: parent ? parent.width : 0; height: parent ? parent.height : "
                "0; focus: true }",
                {{u"app"_s, QVariant::fromValue(&app)}},
                {1180, 790}};

    bool rests(double shift)
    {
        return waitUntil([&] { return findNamed(scene.root(), u"cards"_s)->property("shift").toDouble() == shift; });
    }

    void wheel(QPoint pixels, QPoint angle, Qt::ScrollPhase phase, QPointF at = {590, 300})
    {
        QWheelEvent event(at, at, pixels, angle, Qt::NoButton, Qt::NoModifier, phase, false);
        QCoreApplication::sendEvent(&scene.window(), &event);
    }

    void dragBy(int points)
    {
        QTest::mouseMove(&scene.window(), {590, 700});
        QTest::mousePress(&scene.window(), Qt::LeftButton, {}, {590, 700});
        for (int step = 1; step <= 10; ++step) {
            QTest::mouseMove(&scene.window(), {590 + points * step / 10, 700});
        }
    }
    void release(int points) { QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, {590 + points, 700}); }
};

} // namespace

TEST_F(HomeViewTest, LaysTheCardsOutAroundTheActiveOne)
{
    const auto centreOf = [&](const char *card) {
        return middleOf(findNamed(scene.root(), u"card-"_s + QLatin1String(card))).x();
    };
    EXPECT_EQ(centreOf("binnacle"), 590);
    EXPECT_EQ(centreOf("huelock"), 590 + 656);
    app.setToolIndex(1);
    EXPECT_TRUE(rests(656));
    EXPECT_EQ(centreOf("binnacle"), 590 - 656);
    EXPECT_EQ(centreOf("huelock"), 590);
    const QQuickItem *active = findNamed(scene.root(), u"card-huelock"_s)->parentItem();
    const QQuickItem *neighbour = findNamed(scene.root(), u"card-earmark"_s)->parentItem();
    EXPECT_TRUE(waitUntil([&] { return active->scale() == 1.0 && neighbour->opacity() == 0.55; }));
    EXPECT_EQ(active->opacity(), 1.0);
    EXPECT_EQ(active->z(), 1.0);
    EXPECT_EQ(neighbour->scale(), 0.9);
    EXPECT_EQ(neighbour->z(), 0.0);
    EXPECT_EQ(active->property("blur").toDouble(), 0.0);
    EXPECT_TRUE(waitUntil([&] { return neighbour->property("blur").toDouble() == 2.0; }));
}

TEST_F(HomeViewTest, TheActiveCardOpensItsToolByItsButtonAndAnywhereOnIt)
{
    scene.click(u"Open Binnacle"_s);
    EXPECT_EQ(app.view(), AppState::ViewMode::Tool);
    EXPECT_EQ(app.toolID(), u"binnacle"_s);
    app.openTool(u"earmark"_s);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {300, 395});
    EXPECT_EQ(app.toolID(), u"binnacle"_s);
}

TEST_F(HomeViewTest, TheActiveCardsLightFollowsThePointerOntoItsButton)
{
    const auto *card = findNamed(scene.root(), u"card-binnacle"_s);
    const auto parts = card->findChildren<QQuickItem *>();
    const auto light = std::ranges::find_if(parts, [](auto *part) { return part->property("lightColor").isValid(); });
    ASSERT_NE(light, parts.end());
    QTest::mouseMove(&scene.window(), {590, 700}); // below the card
    QTest::mouseMove(&scene.window(), middleOf(findShown(scene.root(), LKTool::all().front().tagline)));
    EXPECT_TRUE(waitUntil([&] { return (*light)->property("strength").toDouble() == 1; }));
    const QQuickItem *button = findShown(scene.root(), u"Open Binnacle"_s);
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_TRUE(waitUntil([&] { return button->property("hovered").toBool(); }));
    EXPECT_TRUE((*light)->property("hasPointer").toBool());
    EXPECT_EQ((*light)->property("strength").toDouble(), 1);
    QTest::mouseMove(&scene.window(), {590, 700});
    EXPECT_TRUE(waitUntil([&] { return (*light)->property("strength").toDouble() == 0; }));
}

TEST_F(HomeViewTest, ACardAtTheSideTakesNoClicks)
{
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {1100, 395});
    EXPECT_EQ(app.view(), AppState::ViewMode::Landing);
    EXPECT_EQ(app.toolIndex(), 0);
}

TEST_F(HomeViewTest, ArrowKeysMoveAndReturnOpens)
{
    scene.key(Qt::Key_Left);
    EXPECT_EQ(app.toolIndex(), 0);
    scene.key(Qt::Key_Right);
    scene.key(Qt::Key_Right);
    EXPECT_EQ(app.toolIndex(), 2);
    scene.key(Qt::Key_Left);
    EXPECT_EQ(app.toolIndex(), 1);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(app.view(), AppState::ViewMode::Tool);
    EXPECT_EQ(app.toolID(), u"huelock"_s);
}

TEST_F(HomeViewTest, ChevronsStepAndTheOneThatLeadsOffIsDisabled)
{
    const QQuickItem *before = findShown(scene.root(), u"‹"_s);
    const QQuickItem *after = findShown(scene.root(), u"›"_s);
    EXPECT_FALSE(before->isEnabled());
    EXPECT_EQ(before->opacity(), 0.3);
    EXPECT_EQ(after->opacity(), 1.0);
    EXPECT_EQ(middleOf(before), QPoint(26 + 15, 395));
    EXPECT_EQ(middleOf(after), QPoint(1180 - 26 - 15, 395));
    for (int step = 0; step < 4; ++step) {
        scene.click(u"›"_s);
    }
    EXPECT_EQ(app.toolIndex(), 3);
    EXPECT_FALSE(after->isEnabled());
    scene.click(u"‹"_s);
    EXPECT_EQ(app.toolIndex(), 2);
}

TEST_F(HomeViewTest, ACardStacksItsPartsAtTheirDistances)
{
    const auto *card = findNamed(scene.root(), u"card-binnacle"_s);
    const QQuickItem *tile = card->findChild<ToolTileSurface *>()->parentItem();
    const QQuickItem *name = findShown(scene.root(), u"Binnacle"_s);
    const QQuickItem *badge = findShown(scene.root(), u"Ready"_s);
    const QQuickItem *tagline = findShown(scene.root(), LKTool::all().front().tagline);
    const QQuickItem *button = findShown(scene.root(), u"Open Binnacle"_s);
    const QQuickItem *meta = findShown(scene.root(), LKTool::all().front().meta);
    const auto top = [&](const QQuickItem *item) { return item->mapToItem(card, QPointF()).y(); };
    const auto bottom = [&](const QQuickItem *item) { return top(item) + item->height(); };
    EXPECT_EQ(card->width(), 660);
    EXPECT_EQ(tile->size(), QSizeF(96, 96));
    EXPECT_EQ(top(tile), 34);
    EXPECT_EQ(top(name->parentItem()), bottom(tile) + 18);
    EXPECT_EQ(badge->mapToItem(name, QPointF()).x(), name->width() + 9);
    EXPECT_EQ(top(tagline), bottom(name->parentItem()) + 8);
    EXPECT_EQ(tagline->width(), 660 - 2 * 40);
    EXPECT_EQ(top(button), bottom(tagline) + 20);
    EXPECT_EQ(top(meta), bottom(button) + 16);
    EXPECT_EQ(card->height(), bottom(meta) + 34);
}

TEST_F(HomeViewTest, ACardInDevelopmentSaysSoAndOffersAPreview)
{
    const auto *card = findNamed(scene.root(), u"card-huelock"_s);
    app.setToolIndex(1);
    EXPECT_TRUE(rests(656));
    EXPECT_NE(findShown(const_cast<QQuickItem *>(card), u"In development"_s), nullptr);
    EXPECT_EQ(findShown(const_cast<QQuickItem *>(card), u"Ready"_s), nullptr);
    scene.click(u"Preview"_s);
    EXPECT_EQ(app.toolID(), u"huelock"_s);
}

TEST_F(HomeViewTest, DotsMarkTheActiveToolAndBearTheToolsNames)
{
    app.setToolIndex(2);
    for (int index = 0; index < 4; ++index) {
        const QQuickItem *dot = findNamed(scene.root(), u"dot-%1"_s.arg(index));
        const QQuickItem *mark = dot->property("contentItem").value<QQuickItem *>()->childItems().first();
        const QColor expected = index == 2 ? LK::instance().palette().accent : LK::instance().palette().borderStrong;
        EXPECT_EQ(mark->size(), QSizeF(5, 5));
        EXPECT_TRUE(waitUntil([&] { return mark->property("color").value<QColor>() == expected; })) << index;
        EXPECT_EQ(dot->property("text").toString(), LKTool::all().at(static_cast<std::size_t>(index)).name);
        EXPECT_EQ(dot->mapToScene({0, 20}).y(), 790 - 18);
    }
}

TEST_F(HomeViewTest, ADotMovesStraightToItsTool)
{
    const QQuickItem *dot = findNamed(scene.root(), u"dot-3"_s);
    EXPECT_EQ(dot->size(), QSizeF(20, 20));
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(dot));
    EXPECT_EQ(app.toolIndex(), 3);
    EXPECT_TRUE(rests(3 * 656.0));
}

TEST_F(HomeViewTest, ADotAnswersToThePointer)
{
    const QQuickItem *dot = findNamed(scene.root(), u"dot-1"_s);
    const QQuickItem *mark = dot->property("contentItem").value<QQuickItem *>()->childItems().first();
    const auto is = [mark](const QColor &color) {
        return waitUntil([&] { return mark->property("color").value<QColor>() == color; });
    };
    QTest::mouseMove(&scene.window(), middleOf(dot));
    EXPECT_TRUE(is(LK::instance().palette().textSecondary));
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, middleOf(dot));
    EXPECT_TRUE(is(LK::instance().palette().textPrimary));
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, middleOf(dot));
    EXPECT_TRUE(is(LK::instance().palette().accent));
}

TEST_F(HomeViewTest, ADragPastTheThresholdMovesOnAndAShorterOneSpringsBack)
{
    dragBy(-100);
    EXPECT_EQ(app.dragX(), -100);
    release(-100);
    EXPECT_EQ(app.toolIndex(), 0);
    EXPECT_EQ(app.dragX(), 0);
    EXPECT_TRUE(rests(0));
    dragBy(-130);
    release(-130);
    EXPECT_EQ(app.toolIndex(), 1);
    EXPECT_TRUE(rests(656));
    EXPECT_EQ(app.view(), AppState::ViewMode::Landing);
}

TEST_F(HomeViewTest, ADragOfLessThanTenPointsMovesNothing)
{
    dragBy(-9);
    EXPECT_EQ(app.dragX(), 0);
    release(-9);
    EXPECT_EQ(app.toolIndex(), 0);
}

TEST_F(HomeViewTest, ADragThatStartsOnACardDoesNotOpenIt)
{
    QTest::mouseMove(&scene.window(), {590, 300});
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, {590, 300});
    for (int x = 590; x > 400; x -= 19) {
        QTest::mouseMove(&scene.window(), {x, 300});
    }
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, {400, 300});
    EXPECT_EQ(app.view(), AppState::ViewMode::Landing);
    EXPECT_EQ(app.toolIndex(), 1);
}

TEST_F(HomeViewTest, ATrackpadsSwipeStepsOnceAndItsMomentumIsSwallowed)
{
    wheel({}, {}, Qt::ScrollBegin);
    wheel({-40, 0}, {-320, 0}, Qt::ScrollUpdate);
    EXPECT_EQ(app.dragX(), -40);
    wheel({-40, 0}, {-320, 0}, Qt::ScrollUpdate);
    wheel({-400, 0}, {-3200, 0}, Qt::ScrollUpdate);
    wheel({}, {}, Qt::ScrollEnd);
    wheel({-300, 0}, {-2400, 0}, Qt::ScrollMomentum);
    EXPECT_EQ(app.toolIndex(), 1);
    EXPECT_EQ(app.dragX(), 0);
}

TEST_F(HomeViewTest, FingersThatTheDisplayTellsNoPhasesOfStepOnceToo)
{
    for (int i = 0; i < 30; ++i) {
        wheel({-7, 0}, {-50, 0}, Qt::NoScrollPhase);
    }
    EXPECT_EQ(app.toolIndex(), 1);
    // Once they have rested it is another swipe.
    const auto *pause = scene.root()->findChild<CarouselScrollCatcher *>()->findChild<QTimer *>();
    EXPECT_TRUE(waitUntil([&] { return !pause->isActive(); }));
    wheel({-7, 0}, {-50, 0}, Qt::NoScrollPhase);
    EXPECT_LT(app.dragX(), 0);
    EXPECT_TRUE(waitUntil([&] { return app.dragX() == 0; })); // and springs back by itself
    EXPECT_EQ(app.toolIndex(), 1);
}

TEST_F(HomeViewTest, ASidewaysNotchOfAWheelStepsOnceInAWhile)
{
    wheel({}, {-120, 0}, Qt::NoScrollPhase);
    wheel({}, {-120, 0}, Qt::NoScrollPhase);
    EXPECT_EQ(app.toolIndex(), 1);
}

TEST_F(HomeViewTest, WheelsThatTurnOnlyVerticallyMoveNothing)
{
    wheel({}, {0, -120}, Qt::NoScrollPhase);
    wheel({0, -30}, {0, -50}, Qt::NoScrollPhase);
    wheel({0, -300}, {0, -900}, Qt::ScrollUpdate);
    wheel({}, {}, Qt::ScrollEnd);
    EXPECT_EQ(app.toolIndex(), 0);
    EXPECT_EQ(app.dragX(), 0);
}

TEST_F(HomeViewTest, TwoDevicesAtOnceEndAtACard)
{
    wheel({}, {}, Qt::ScrollBegin);
    wheel({-30, 0}, {-200, 0}, Qt::ScrollUpdate);
    wheel({}, {-120, 0}, Qt::NoScrollPhase);
    wheel({}, {}, Qt::ScrollBegin);
    wheel({20, 0}, {100, 0}, Qt::ScrollUpdate);
    wheel({}, {}, Qt::ScrollEnd);
    wheel({}, {}, Qt::ScrollEnd);
    EXPECT_EQ(app.dragX(), 0);
    EXPECT_EQ(app.toolIndex(), 1);
}

TEST_F(HomeViewTest, WhatLiesAboveScrollsInsteadOfTheCarousel)
{
    scene.root()->setProperty("isCovered", true);
    wheel({}, {-120, 0}, Qt::NoScrollPhase);
    EXPECT_EQ(app.toolIndex(), 0);
}

TEST_F(HomeViewTest, InAWindowOfAnySizeTheActiveCardIsInTheMiddleAndKeysMove)
{
    for (const QSize size : {QSize(1, 1), QSize(7680, 4320), QSize(980, 640)}) {
        scene.root()->setSize(size);
        app.setToolIndex(0);
        EXPECT_TRUE(rests(0));
        const QQuickItem *card = findNamed(scene.root(), u"card-binnacle"_s);
        const QPointF middle = card->mapToScene(QPointF(card->width() / 2, card->height() / 2));
        EXPECT_NEAR(middle.x(), size.width() / 2.0, 0.5); // on whole points
        EXPECT_NEAR(middle.y(), size.height() / 2.0, 0.5);
        scene.key(Qt::Key_Right);
        EXPECT_EQ(app.toolIndex(), 1);
        (void)scene.window().grabWindow();
    }
}

TEST_F(HomeViewTest, TheCardsKeepToTheMiddleOfTheSmallestWindow)
{
    scene.window().resize(980, 640);
    EXPECT_TRUE(waitUntil([&] { return scene.root()->width() == 980; }));
    EXPECT_EQ(middleOf(findNamed(scene.root(), u"card-binnacle"_s)).x(), 490);
    scene.key(Qt::Key_Right);
    EXPECT_EQ(app.toolIndex(), 1);
}
