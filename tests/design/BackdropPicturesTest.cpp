// The backgrounds as a display shows them, held against a plain painting of the same arithmetic.
#include <cmath>

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include "design/LKKineticGridCanvas.h"
#include "tests/design/BackdropScene.h"
#include "tests/design/PaintedBackdrops.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Returns the distance of an area's pixels from the background, all channels together.
double lightOf(const QImage &picture, const QRect &area)
{
    const QColor background = LK::instance().palette().surfaceWindow;
    double light = 0.0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            light += std::abs(color.red() - background.red()) + std::abs(color.green() - background.green()) +
                     std::abs(color.blue() - background.blue());
        }
    }
    return light;
}

// Faint shapes, of which a picture's whole says nothing: at the places around which nothing else is drawn, there must
// be as much light as painted.
void expectFaintShapes(const QImage &shown, const QImage &painted, const QImage &without,
                       const std::vector<QPoint> &places)
{
    double shownLight = 0.0;
    double paintedLight = 0.0;
    int free = 0;
    for (const QPoint &place : places) {
        const QRect around(place - QPoint(3, 3), QSize(6, 6));
        if (!shown.rect().contains(around) || lightOf(without, around) > 0.0) {
            continue;
        }
        ++free;
        shownLight += lightOf(shown, around);
        paintedLight += lightOf(painted, around);
    }
    EXPECT_GT(free, 20);
    EXPECT_GT(paintedLight, 0.0);
    EXPECT_NEAR(shownLight / paintedLight, 1.0, 0.25);
}

} // namespace

class InBothThemes : public testing::TestWithParam<LK::Theme>
{
protected:
    InBothThemes() { LK::instance().setTheme(GetParam()); }
    [[nodiscard]] static QString named(const QString &name)
    {
        return name + (GetParam() == LK::Theme::Light ? u"-light"_s : u"-dark"_s);
    }
};

INSTANTIATE_TEST_SUITE_P(Backdrops, InBothThemes, testing::Values(LK::Theme::Dark, LK::Theme::Light));

TEST_P(InBothThemes, TheGridAtRestIsDrawnAsItIsWorkedOut)
{
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", usual);
    const QImage shown = scene.picture(named(u"grid-rest"_s));
    const QImage painted = paintedGrid({}, usual, 0.0);
    expectAlike(shown, painted);
    std::vector<QPoint> dots;
    for (int y = 14; y < usual.height(); y += 28) {
        for (int x = 14; x < usual.width(); x += 28) {
            dots.emplace_back(x, y);
        }
    }
    expectFaintShapes(shown, painted, paintedGrid({}, usual, 0.0, 1.0, {.dots = true}), dots);
}

TEST_P(InBothThemes, TheGridBendsAndGlowsAroundThePointer)
{
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", usual);
    auto &canvas = scene.canvas<LKKineticGridCanvas>();
    QTest::mouseMove(&scene.window(), {500, 300}); // the display knows only changes
    QTest::mouseMove(&scene.window(), {400, 300});
    EXPECT_TRUE(waitUntil([&] { return canvas.grid().mouse() == QPointF(400, 300); }));
    expectAlike(scene.picture(named(u"grid-warped"_s)), paintedGrid(canvas.grid(), usual, 0.0));
}

TEST_P(InBothThemes, ARingRunsOutwardFromAClick)
{
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", usual);
    auto &canvas = scene.canvas<LKKineticGridCanvas>();
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, {700, 420});
    ASSERT_EQ(canvas.grid().ripples().size(), 1U);
    scene.time = 0.35;
    const QImage shown = scene.picture(named(u"grid-ripple"_s));
    const QImage painted = paintedGrid(canvas.grid(), usual, 0.35);
    expectAlike(shown, painted);
    std::vector<QPoint> ring;
    for (int degree = 0; degree < 360; ++degree) {
        const double angle = degree * M_PI / 180;
        const double radius = canvas.grid().ripples().front().radius(0.35);
        ring.push_back((QPointF(700, 420) + radius * QPointF(std::cos(angle), std::sin(angle))).toPoint());
    }
    expectFaintShapes(shown, painted, paintedGrid(canvas.grid(), usual, 0.35, 1.0, {.rings = true}), ring);
}

TEST_P(InBothThemes, StarlightIsDrawnAsItIsWorkedOut)
{
    BackdropScene scene("LKStarlightBackground { anchors.fill: parent }", usual);
    for (const double seconds : {0.0, 0.5, 3.0, 999.0}) {
        scene.time = seconds;
        expectAlike(scene.picture(named(u"starlight-%1"_s.arg(seconds))), paintedStarlight(seconds, usual));
    }
}

TEST_P(InBothThemes, BoringModeShowsOneStillPictureOfEach)
{
    LK::instance().setBoringMode(true);
    {
        BackdropScene grid("LKKineticGrid { anchors.fill: parent }", {980, 640});
        QTest::mouseMove(&grid.window(), {400, 300});
        QTest::mouseClick(&grid.window(), Qt::LeftButton, {}, {700, 420});
        expectAlike(grid.picture(named(u"grid-boring"_s)), paintedGrid({}, {980, 640}, 0.0));
        LK::instance().setBoringMode(true);
    }
    LK::instance().setTheme(GetParam());
    LK::instance().setBoringMode(true);
    BackdropScene starlight("LKStarlightBackground { anchors.fill: parent }", {980, 640});
    starlight.time = 5.0;
    expectAlike(starlight.picture(named(u"starlight-boring"_s)), paintedStarlight(999.0, {980, 640}));
}

TEST(BackdropPictures, OfATinyWindowDrawsNothingAtAll)
{
    for (const char *type : {"LKKineticGrid", "LKStarlightBackground"}) {
        for (const QSize size : {QSize(1, 1), QSize(1, 300), QSize(300, 1)}) {
            const std::string sides =
                " { width: " + std::to_string(size.width()) + "; height: " + std::to_string(size.height()) + " }";
            BackdropScene scene("Item { " + (type + sides) + " }", {300, 300});
            scene.time = 3.0;
            const QImage shown = scene.picture(u"tiny"_s);
            QImage empty = shown;
            empty.fill(Qt::white);
            QPainter(&empty).fillRect(QRect({}, size), LK::instance().palette().surfaceWindow);
            EXPECT_EQ(difference(shown, empty).greatest, 0) << type;
        }
    }
}

TEST(BackdropPictures, FillsTheLargestWindowsToTheLastCorner)
{
    for (const char *type : {"LKKineticGrid", "LKStarlightBackground"}) {
        BackdropScene scene(
            std::string("Item { ") + type + " { x: 1180 - 7680; y: 790 - 4320; width: 7680; height: 4320 } }", usual);
        scene.time = 30.0;
        const QImage shown = scene.picture(u"large-%1"_s.arg(QLatin1String(type)));
        const QImage corner = shown.copy(usual.width() - 60, usual.height() - 60, 60, 60);
        EXPECT_GT(difference(corner, emptyPicture(corner.size())).greatest, 10) << type;
    }
}

TEST(BackdropPictures, StaysCrispAtTheScaleOfTheDisplay)
{
    constexpr QSize small(600, 400);
    BackdropScene scene("LKKineticGrid { anchors.fill: parent }", small);
    auto &canvas = scene.canvas<LKKineticGridCanvas>();
    canvas.movePointer({300, 200});
    canvas.click({300, 200});
    EXPECT_TRUE(waitUntil([&] { return canvas.grid().mouse() == QPointF(300, 200); }));
    scene.time = 0.3;
    const double scale = scene.window().effectiveDevicePixelRatio();
    const QImage shown = scene.picture(u"grid-scale-%1"_s.arg(scale));
    EXPECT_EQ(shown.size(), small * scale);
    expectAlike(shown, paintedGrid(canvas.grid(), small, 0.3, scale));
}

TEST(BackdropPictures, ResizedToOnePointAndToTheLargestWindowItIsDrawnAsEverAfterwards)
{
    for (const char *type : {"LKKineticGrid", "LKStarlightBackground"}) {
        BackdropScene scene(type + std::string(" { width: 1180; height: 790 }"), usual);
        scene.time = 30.0;
        for (const QSize size : {QSize(1, 1), QSize(980, 640), QSize(7680, 4320), QSize(980, 640)}) {
            // The display may have its own idea of a window's size; the scene has ours.
            scene.scene().root()->setSize(size);
            (void)scene.window().grabWindow();
        }
        if (auto *canvas = qobject_cast<LKKineticGridCanvas *>(scene.scene().root()->findChild<Backdrop *>())) {
            expectAlike(scene.picture(u"resized"_s).copy(0, 0, 900, 600),
                        paintedGrid(canvas->grid(), {980, 640}, 30.0).copy(0, 0, 900, 600));
        }
    }
}
