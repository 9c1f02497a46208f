// The surfaces on a real display with real shaders: what is drawn, and when nothing is.
#include <cmath>

#include <QtGui/QCursor>
#include <QtGui/QPainter>
#include <QtTest/QTest>

#include "design/Corners.h"
#include "design/LK.h"
#include "design/SurfaceMath.h"
#include "tests/support/Motion.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class OnDisplay : public testing::Test
{
protected:
    ~OnDisplay() override
    {
        LK::instance().setTheme(LK::Theme::Dark);
        LK::instance().setBoringMode(false);
        LK::instance().setReducedMotion(false);
    }
};

using Drawing = OnDisplay;
using Frames = OnDisplay;

std::string document(const std::string &body)
{
    return "import QtQuick\nimport Larkspan.Design\nRectangle { width: 600; height: 400;"
           "color: LK.palette.surfaceWindow\n" +
           body + "\n}";
}

const std::string card = document("LKSpotlightCard { objectName: 'card'; x: 100; y: 100; width: 280; height: 180 }");
constexpr QPointF cardCorner(100, 100);
constexpr QSizeF cardSize(280, 180);

QRgb over(QColor below, QColor above, double opacity)
{
    const auto blend = [opacity](float a, float b) { return static_cast<float>(std::lerp(a, b, opacity)); };
    return QColor::fromRgbF(blend(below.redF(), above.redF()), blend(below.greenF(), above.greenF()),
                            blend(below.blueF(), above.blueF()))
        .rgba();
}

QRgb added(QColor below, QColor above, double opacity)
{
    const auto add = [opacity](float a, float b) { return std::min(1.0f, a + static_cast<float>(opacity) * b); };
    return QColor::fromRgbF(add(below.redF(), above.redF()), add(below.greenF(), above.greenF()),
                            add(below.blueF(), above.blueF()))
        .rgba();
}

void expectNear(QRgb drawn, QRgb expected, const std::string &where, int tolerance = 3)
{
    EXPECT_LE(std::max({std::abs(qRed(drawn) - qRed(expected)), std::abs(qGreen(drawn) - qGreen(expected)),
                        std::abs(qBlue(drawn) - qBlue(expected))}),
              tolerance)
        << where << ": drawn " << QColor(drawn).name().toStdString() << ", expected "
        << QColor(expected).name().toStdString();
}

// The display's own pointer: one that is only played would be overtaken by what the real one does.
void movePointer(const Scene &scene, QPoint place)
{
    QCursor::setPos(scene.window().mapToGlobal(place));
}

// The card, lit with the pointer at this place of it, and drawn to the end of its motion.
QImage litCard(Scene &scene, QPointF pointer)
{
    const QQuickItem *spotlit = findNamed(scene.root(), u"card"_s);
    movePointer(scene, (cardCorner + pointer).toPoint());
    EXPECT_TRUE(waitUntil([&] { return spotlit->property("strength").toDouble() == 1; }));
    EXPECT_TRUE(comesToRest());
    return scene.window().grabWindow();
}

// Returns the strength of the light there, as drawn: at the middle of a pixel.
double falloff(QPoint pixel, QPointF pointer)
{
    const QPointF place = QPointF(pixel) + QPointF(0.5, 0.5) - cardCorner;
    return std::max(0.0,
                    1.0 - std::hypot(place.x() - pointer.x(), place.y() - pointer.y()) / spotlightRadius(cardSize));
}

// The share of a point's neighbourhood that a shape fills, weighted by a Gaussian of that deviation.
double blurred(const QImage &shape, QPoint place, double deviation)
{
    const int reach = static_cast<int>(std::ceil(4 * deviation));
    double sum = 0;
    double whole = 0;
    for (int y = -reach; y <= reach; ++y) {
        for (int x = -reach; x <= reach; ++x) {
            const double weight = std::exp(-(x * x + y * y) / (2 * deviation * deviation));
            const QPoint there = place + QPoint(x, y);
            sum += shape.rect().contains(there) ? weight * qGray(shape.pixel(there)) / 255.0 : 0.0;
            whole += weight;
        }
    }
    return sum / whole;
}

} // namespace

TEST_F(Drawing, AShadowIsItsShapeBlurredAtEveryEdgeAndCorner)
{
    const LKShadow shadow = LK::instance().palette().shadowPopover;
    for (const QSize size : {QSize(300, 200), QSize(300, 40), QSize(60, 50)}) {
        constexpr int radius = 20;
        const QRect place(QPoint(100, 80), size);
        Scene scene("import QtQuick\nimport Larkspan.Design\nRectangle { width: 600; height: 400; color: 'white';"
                    "LKDropShadow { x: 100; y: 80; width: " +
                    std::to_string(size.width()) + "; height: " + std::to_string(size.height()) +
                    "; cornerRadius: 20; shadow: LK.palette.shadowPopover } }");
        const QImage drawn = scene.window().grabWindow();
        QImage shape(600, 400, QImage::Format_RGB32);
        shape.fill(Qt::black);
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(corners::path(place.translated(qRound(shadow.x), qRound(shadow.y)), radius), Qt::white);
        painter.end();
        for (int y = 50; y < place.bottom() + 40; y += 14) {
            for (int x = 70; x < place.right() + 40; x += 14) {
                expectNear(drawn.pixel(x, y),
                           over(Qt::white, Qt::black,
                                blurred(shape, {x, y}, shadow.radius) * static_cast<double>(shadow.color.alphaF())),
                           std::to_string(x) + ", " + std::to_string(y));
            }
        }
    }
}

TEST_F(Drawing, ASpotlightAddsToADarkCardAndCoversALightOne)
{
    constexpr QPointF pointer(70, 90);
    for (const LK::Theme theme : {LK::Theme::Dark, LK::Theme::Light}) {
        LK::instance().setTheme(theme);
        const LKPalette &palette = LK::instance().palette();
        Scene scene(card);
        const QImage drawn = litCard(scene, pointer);
        const QColor light = mixed(palette.accent, palette.info, spotlightCentre(pointer, cardSize).x());
        for (const QPoint pixel : {QPoint(170, 190), QPoint(200, 190), QPoint(250, 150), QPoint(360, 260)}) {
            const double strength = falloff(pixel, pointer);
            expectNear(drawn.pixel(pixel),
                       theme == LK::Theme::Dark ? added(palette.surfaceCard, light, 0.24 * strength)
                                                : over(palette.surfaceCard, light, 0.15 * strength),
                       "at " + std::to_string(pixel.x()) + ", " + std::to_string(pixel.y()));
        }
    }
}

TEST_F(Drawing, ASpotlightLightsTheBorderOverItsOwnColour)
{
    LK::instance().setTheme(LK::Theme::Light);
    const LKPalette &palette = LK::instance().palette();
    constexpr QPointF pointer(70, 90);
    Scene scene(card);
    const QImage drawn = litCard(scene, pointer);
    const QColor light = mixed(palette.accent, palette.info, 0.25);
    const QPoint edge(100, 190);
    expectNear(drawn.pixel(edge), over(palette.borderSubtle, light, 0.7 * falloff(edge, pointer)), "on the edge");
}

TEST_F(Drawing, ASpotlightGlowsAroundTheCardAsABlurOfIt)
{
    const LKPalette &palette = LK::instance().palette();
    constexpr QPointF pointer(140, 90);
    Scene scene(card);
    const QImage drawn = litCard(scene, pointer);
    const QColor light = mixed(palette.accent, palette.info, 0.5);
    for (const int distance : {3, 12, 20, 30}) {
        const double fromEdge = distance - 0.5 - (1.015 - 1) * cardSize.width() / 2;
        const double share = 0.5 * std::erfc(fromEdge / (16 * std::sqrt(2.0)));
        const QPoint pixel(100 - distance, 190);
        expectNear(drawn.pixel(pixel), over(palette.surfaceWindow, light, 0.22 * share),
                   std::to_string(distance) + " beside the card", 1);
    }
}

TEST_F(Drawing, ACardWithoutLightIsPlain)
{
    LK::instance().setBoringMode(true);
    const LKPalette &palette = LK::instance().palette();
    Scene scene(document("LKSpotlightCard { x: 100; y: 100; width: 280; height: 180\n"
                         "HoverHandler { objectName: 'hover' } }"));
    movePointer(scene, {170, 190});
    const auto *hover = scene.root()->findChild<QObject *>(u"hover"_s);
    EXPECT_TRUE(waitUntil([&] { return hover->property("hovered").toBool(); }));
    EXPECT_TRUE(comesToRest());
    const QImage drawn = scene.window().grabWindow();
    EXPECT_EQ(drawn.pixel(170, 190), palette.surfaceCard.rgb());
    EXPECT_EQ(drawn.pixel(101, 190), palette.surfaceCard.rgb());
    expectNear(drawn.pixel(100, 190), over(palette.surfaceCard, Qt::white, 0.14), "on the edge");
    EXPECT_EQ(drawn.pixel(97, 190), palette.surfaceWindow.rgb());
}

TEST_F(Drawing, AHaloTintsWhatIsAroundAndEndsSoon)
{
    LK::instance().setBoringMode(true); // still
    Scene scene(document("LKAIGlowModifier { x: 100; y: 100; width: 200; height: 60; active: true"
                         "\nRectangle { anchors.fill: parent; color: 'black' } }"));
    EXPECT_EQ(runningAnimations(), 0);
    const QImage drawn = scene.window().grabWindow();
    const QColor window = LK::instance().palette().surfaceWindow;
    EXPECT_EQ(drawn.pixel(200, 130), QColor(Qt::black).rgb());
    EXPECT_GT(qBlue(drawn.pixel(200, 97)), window.blue() + 8);
    EXPECT_GT(qBlue(drawn.pixel(200, 162)), window.blue() + 8);
    EXPECT_GT(qBlue(drawn.pixel(96, 130)), window.blue() + 8);
    EXPECT_EQ(drawn.pixel(200, 70), window.rgb());
    EXPECT_EQ(drawn.pixel(200, 190), window.rgb());
}

TEST_F(Drawing, AGleamCrossesTheMessageUnlessMotionIsReduced)
{
    const int secondary = LK::instance().palette().textSecondary.red();
    for (const bool reduced : {false, true}) {
        LK::instance().setReducedMotion(reduced);
        Scene scene(document("LKLoadingState { x: 50; y: 50; messages: ['Telling the rooms apart'] }"));
        // In the message alone: the mark's cells are as bright.
        const auto isBright = [&] {
            const QImage drawn = scene.window().grabWindow();
            for (int y = 45; y < 68; ++y) {
                for (int x = 80; x < 300; ++x) {
                    if (qRed(drawn.pixel(x, y)) > secondary + 20) {
                        return true;
                    }
                }
            }
            return false;
        };
        if (reduced) {
            EXPECT_EQ(runningAnimations(), 0);
            EXPECT_FALSE(isBright());
        } else {
            EXPECT_TRUE(waitUntil(isBright));
        }
    }
}

TEST_F(Drawing, AGleamIsHalfAsWideAsTheTextAndBrightestInItsMiddle)
{
    constexpr int width = 400;
    Scene scene(document("Rectangle { width: 400; height: 20; color: 'white'; layer.enabled: true;"
                         "layer.effect: ShaderEffect { property real offset: 0.3;"
                         "fragmentShader: 'qrc:/qt/qml/Larkspan/Design/shaders/shimmer.frag.qsb' } }"));
    const QImage drawn = scene.window().grabWindow();
    const int window = LK::instance().palette().surfaceWindow.red();
    for (const auto &[at, share] : {std::pair(0.29, 0.0), {0.425, 0.5}, {0.55, 1.0}, {0.675, 0.5}, {0.81, 0.0}}) {
        EXPECT_NEAR(qRed(drawn.pixel(static_cast<int>(at * width), 10)), std::lerp(window, 255, share), 4) << at;
    }
}

TEST_F(Drawing, ADisabledButtonIsDimmedAsAWhole)
{
    Scene scene(document("LKButton { x: 100; y: 100; title: '\u2588\u2588'; kind: LKButton.Accent; enabled: false }"));
    const QImage drawn = scene.window().grabWindow();
    const QQuickItem *button = findShown(scene.root(), u"\u2588\u2588"_s);
    const LKPalette &palette = LK::instance().palette();
    // A block of text hides the fill below it, so only the page shines through.
    expectNear(drawn.pixel(middleOf(button)), over(palette.surfaceWindow, palette.textOnAccent, 0.45), "on the text",
               10); // some of the fill between two blocks; nearly twice that where it shines through
    expectNear(drawn.pixel(middleOf(button) - QPoint(static_cast<int>(button->width() / 2) - 4, 0)),
               over(palette.surfaceWindow, palette.accentSolid, 0.45), "beside it");
}

TEST_F(Frames, AreDrawnByALoadingStateThatIsSeenAndByNoneThatIsHidden)
{
    Scene scene(document("Item { objectName: 'place'; LKLoadingState { messages: ['one', 'two'] } }"));
    const FrameCount frames(scene.window());
    EXPECT_TRUE(frames.keepComing());
    findNamed(scene.root(), u"place"_s)->setVisible(false);
    EXPECT_TRUE(comesToRest());
    findNamed(scene.root(), u"place"_s)->setVisible(true);
    EXPECT_TRUE(frames.keepComing());
}

TEST_F(Frames, AreDrawnByAHaloThatIsSeenAndByNoneThatIsHiddenOrBored)
{
    Scene scene(document("LKAIGlowModifier { objectName: 'glow'; width: 200; height: 60; active: true }"));
    const FrameCount frames(scene.window());
    EXPECT_TRUE(frames.keepComing());
    findNamed(scene.root(), u"glow"_s)->setVisible(false);
    EXPECT_TRUE(comesToRest());
    findNamed(scene.root(), u"glow"_s)->setVisible(true);
    EXPECT_TRUE(frames.keepComing());
    LK::instance().setBoringMode(true);
    EXPECT_TRUE(comesToRest());
}

TEST_F(Frames, EndOnceACardsLightHasArrived)
{
    Scene scene(card);
    static_cast<void>(litCard(scene, {70, 90}));
    EXPECT_EQ(runningAnimations(), 0);
}

TEST_F(Frames, AreNotDrawnForAMinimizedWindow)
{
    Scene scene(document("LKAIGlowModifier { objectName: 'glow'; width: 200; height: 60; active: true }"
                         "LKLoadingState { y: 100; objectName: 'loading'; messages: ['one', 'two'] }"));
    const QQuickItem *loading = findNamed(scene.root(), u"loading"_s);
    const FrameCount frames(scene.window());
    EXPECT_TRUE(frames.keepComing());
    scene.window().showMinimized();
    EXPECT_TRUE(waitUntil([&] { return !loading->property("animating").toBool(); }));
    EXPECT_TRUE(comesToRest());
    scene.window().showNormal();
    EXPECT_TRUE(waitUntil([&] { return loading->property("animating").toBool(); }));
    EXPECT_TRUE(frames.keepComing());
}
