// The backgrounds as a display shows them, held against a plain painting of the same arithmetic.
#include <cmath>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "design/LKKineticGridCanvas.h"
#include "design/LKStarlightCanvas.h"
#include "tests/support/Motion.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

QColor colorOf(const RGBA &color)
{
    return QColor::fromRgbF(static_cast<float>(color.r / 255), static_cast<float>(color.g / 255),
                            static_cast<float>(color.b / 255), static_cast<float>(color.a));
}

QImage emptyPicture(QSize size, double scale = 1.0)
{
    QImage picture(size * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(LK::instance().palette().surfaceWindow);
    return picture;
}

// The parts that a painting of the grid leaves out.
struct Without
{
    bool dots = false;
    bool rings = false;
};

QImage paintedGrid(const KineticGrid &grid, QSize size, double now, double scale = 1.0, Without without = {})
{
    QImage picture = emptyPicture(size, scale);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const GridColors &colors = GridColors::of(LK::instance().theme());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOf(colors.lineBase.at(colors.dotOpacity)));
    for (double y = 14; y < size.height() && !without.dots; y += 28) {
        for (double x = 14; x < size.width(); x += 28) {
            painter.drawEllipse(QPointF(x, y), 0.7, 0.7);
        }
    }
    const GridMesh mesh = GridMesh::filling(size.width(), size.height());
    const auto at = [&](int column, int row) { return grid.warp(mesh, column, row, now); };
    const auto line = [&](const GridPoint &a, const GridPoint &b) {
        const SegmentLook look = SegmentLook::between(a.intensity, b.intensity, colors);
        painter.setPen(QPen(colorOf(look.color), look.width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(a.x, a.y), QPointF(b.x, b.y));
    };
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column < mesh.columns; ++column) {
            line(at(column, row), at(column + 1, row));
        }
    }
    for (int column = 0; column <= mesh.columns; ++column) {
        for (int row = 0; row < mesh.rows; ++row) {
            line(at(column, row), at(column, row + 1));
        }
    }
    painter.setPen(Qt::NoPen);
    for (int row = 0; row <= mesh.rows; ++row) {
        for (int column = 0; column <= mesh.columns; ++column) {
            const GridPoint point = at(column, row);
            const QPointF centre(point.x, point.y);
            const NodeLook look = NodeLook::of(point.intensity, colors);
            if (look.glowRadius > 0.0) {
                QRadialGradient glow(centre, look.glowRadius, centre, look.radius / 2);
                glow.setColorAt(0, colorOf(colors.glow.at(look.glowOpacity)));
                glow.setColorAt(1, colorOf(colors.glow.at(0)));
                painter.setBrush(glow);
                painter.drawEllipse(centre, look.glowRadius, look.glowRadius);
            }
            painter.setBrush(colorOf(look.color));
            painter.drawEllipse(centre, look.radius, look.radius);
        }
    }
    painter.setBrush(Qt::NoBrush);
    for (const Ripple &ripple : grid.ripples()) {
        painter.setPen(QPen(colorOf(colors.ripple.at(0.28 * ripple.strength(now))), 1.5));
        if (!without.rings) {
            painter.drawEllipse(QPointF(ripple.x, ripple.y), ripple.radius(now), ripple.radius(now));
        }
    }
    return picture;
}

QImage paintedStarlight(double seconds, QSize size)
{
    QImage picture = emptyPicture(size);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const starlight::Lattice lattice = starlight::Lattice::filling(size.width(), size.height());
    const starlight::Colors &colors = starlight::Colors::of(LK::instance().theme());
    for (int row = 0; row < lattice.rows; ++row) {
        for (int column = 0; column < lattice.columns; ++column) {
            const RGBA &color = starlight::isAccent(column, row) ? colors.accent : colors.plain;
            painter.setBrush(colorOf(color.at(lattice.opacity(seconds, column, row))));
            painter.drawRoundedRect(QRectF(column * 20.0 + 7, row * 20.0 + 7, 6, 6), 1.5, 1.5);
        }
    }
    return picture;
}

struct Difference
{
    double mean = 0.0; // of all channels of all pixels, 0 to 255
    int greatest = 0;
};

Difference difference(const QImage &a, const QImage &b)
{
    EXPECT_EQ(a.size(), b.size());
    const QImage left = a.convertToFormat(QImage::Format_RGB32);
    const QImage right = b.convertToFormat(QImage::Format_RGB32);
    Difference result;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QRgb p = left.pixel(x, y);
            const QRgb q = right.pixel(x, y);
            for (const int apart : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) {
                result.mean += std::abs(apart);
                result.greatest = std::max(result.greatest, std::abs(apart));
            }
        }
    }
    result.mean /= 3.0 * left.width() * left.height();
    return result;
}

// A background of the house in a window, on a clock of ours.
class BackdropScene
{
public:
    BackdropScene(const std::string &body, QSize size)
        : m_scene("import QtQuick\nimport Larkspan.Design\n" + body, {}, size)
        , m_backdrop(m_scene.root()->findChild<Backdrop *>())
    {
        m_backdrop->setClock([this] { return time; });
    }
    ~BackdropScene()
    {
        LK::instance().setBoringMode(false);
        LK::instance().setTheme(LK::Theme::Dark);
    }

    template <typename Canvas>
    Canvas &canvas()
    {
        return *qobject_cast<Canvas *>(m_backdrop);
    }
    QQuickWindow &window() { return m_scene.window(); }
    Scene &scene() { return m_scene; }

    // Returns a picture of the window, and keeps it for people where LARKSPAN_PICTURES names a folder.
    QImage picture(const QString &name)
    {
        m_backdrop->update();
        QImage shown = window().grabWindow();
        if (const QString folder = qEnvironmentVariable("LARKSPAN_PICTURES"); !folder.isEmpty()) {
            shown.save(folder + u"/%1.png"_s.arg(name));
        }
        return shown;
    }

    double time = 0.0;

private:
    Scene m_scene;
    Backdrop *m_backdrop;
};

void expectAlike(const QImage &shown, const QImage &painted)
{
    const Difference apart = difference(shown, painted);
    // Edges are rounded in another manner; a line, dot or cell out of place or of another colour is far more.
    EXPECT_LT(apart.mean, 0.25);
    EXPECT_LT(apart.greatest, 40);
}

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

constexpr QSize usual(1180, 790);

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

TEST(Backdrop, OfATinyWindowDrawsNothingAtAll)
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

TEST(Backdrop, FillsTheLargestWindowsToTheLastCorner)
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

TEST(Backdrop, StaysCrispAtTheScaleOfTheDisplay)
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

TEST(Backdrop, ResizedToOnePointAndToTheLargestWindowItIsDrawnAsEverAfterwards)
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
