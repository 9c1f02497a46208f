// The launcher as a display shows it.
#include <QtGui/QCursor>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/QTest>

#include "tests/shell/launcher/LauncherState.h"
#include "tests/support/Motion.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class HomePictures : public testing::TestWithParam<LK::Theme>
{
protected:
    HomePictures() { LK::instance().setTheme(GetParam()); }
    ~HomePictures() override { LK::instance().setTheme(LK::Theme::Dark); }

    LauncherState state;
    AppState &app = state.app;
    Scene scene{"import Larkspan.Shell\nHomeView { width: parent ? parent.width : 0; height: parent ? parent.height : "
                "0; focus: true }",
                {{u"app"_s, QVariant::fromValue(&app)}},
                {1180, 790}};

    QImage picture(const QString &name)
    {
        QImage shown = scene.window().grabWindow();
        if (const QString folder = qEnvironmentVariable("LARKSPAN_PICTURES"); !folder.isEmpty()) {
            shown.save(folder +
                       u"/home-%1-%2.png"_s.arg(name, GetParam() == LK::Theme::Light ? u"light"_s : u"dark"_s));
        }
        return shown;
    }
    bool rests(double shift)
    {
        return waitUntil([&] {
            const QQuickItem *last = findNamed(scene.root(), u"card-parcelry"_s)->parentItem();
            return findNamed(scene.root(), u"cards"_s)->property("shift").toDouble() == shift &&
                   (last->scale() == 1.0 || last->scale() == 0.9);
        });
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Themes, HomePictures, testing::Values(LK::Theme::Dark, LK::Theme::Light));

TEST_P(HomePictures, EachToolStandsInTheMiddleOnTheGridWithItsNeighboursFadingOut)
{
    const QColor card = LK::instance().palette().surfaceCard;
    QCursor::setPos(scene.window().mapToGlobal(QPoint(590, 780))); // below the cards
    for (int index = 0; index < 4; ++index) {
        app.setToolIndex(index);
        ASSERT_TRUE(rests(index * 656.0));
        ASSERT_TRUE(comesToRest()); // the light of the pointer has left the card
        const QImage shown = picture(u"tool-%1"_s.arg(index));
        EXPECT_EQ(shown.pixelColor(300, 395), card) << index;
        // At the window's sides nothing of a neighbour is left.
        EXPECT_EQ(shown.pixelColor(1179, 395), shown.pixelColor(1179, 132)) << index;
        if (index < 3) { // where there is one, it shines through between
            EXPECT_NE(shown.pixelColor(1000, 395), LK::instance().palette().surfaceWindow) << index;
        }
    }
}

TEST_P(HomePictures, OnlyCardsThatAreBlurredOrFadeAreDrawnIntoATexture)
{
    const auto hasTexture = [&](const QString &card) {
        const QQuickItem *place = findNamed(scene.root(), card)->parentItem();
        return place->property("layer").value<QObject *>()->property("enabled").toBool();
    };
    ASSERT_TRUE(rests(0));
    EXPECT_FALSE(hasTexture(u"card-binnacle"_s));
    EXPECT_TRUE(hasTexture(u"card-huelock"_s));
    app.setDragX(-50); // not yet near a side
    ASSERT_TRUE(rests(50));
    EXPECT_FALSE(hasTexture(u"card-binnacle"_s));
    app.setDragX(-150);
    ASSERT_TRUE(rests(150));
    EXPECT_TRUE(hasTexture(u"card-binnacle"_s));
    app.setDragX(0);
    ASSERT_TRUE(rests(0));
    EXPECT_FALSE(hasTexture(u"card-binnacle"_s));
}

TEST_P(HomePictures, TheLargestWindowIsDrawnToItsMiddle)
{
    // More than the display has; its middle is what the window shows.
    scene.root()->setSize({7680, 4320});
    scene.root()->setPosition({590 - 3840, 395 - 2160});
    QCursor::setPos(scene.window().mapToGlobal(QPoint(590, 780)));
    const QColor card = LK::instance().palette().surfaceCard;
    ASSERT_TRUE(comesToRest());
    EXPECT_EQ(picture(u"largest"_s).pixelColor(300, 395), card);
}

TEST_P(HomePictures, InTheMiddleOfADragTheCardsFollowTheHand)
{
    QTest::mouseMove(&scene.window(), {590, 650});
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, {590, 650});
    for (int x = 590; x >= 420; x -= 17) {
        QTest::mouseMove(&scene.window(), {x, 650});
    }
    EXPECT_LT(app.dragX(), -150);
    const QImage shown = picture(u"drag"_s);
    EXPECT_EQ(shown.pixelColor(150, 395), LK::instance().palette().surfaceCard);
    EXPECT_NE(shown.pixelColor(100, 395), LK::instance().palette().surfaceCard) << "the active card fades, too";
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, {420, 650});
}
