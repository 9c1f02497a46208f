// The house's corners as a display shows them, held against a painter's.
#include <cmath>

#include <QtGui/QPainter>

#include "design/Corners.h"
#include "design/LK.h"
#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

constexpr QSize blackPage(320, 240);
constexpr QRect roundedPlace(40, 30, 240, 180);
constexpr double placeRadius = 50; // at which an arc would be three pixels off

QImage paintedPlace(const QColor &fill)
{
    QImage picture(blackPage, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(corners::path(roundedPlace, placeRadius), fill);
    return picture;
}

QImage shownOnBlack(const std::string &body)
{
    Scene scene("import QtQuick\nimport Larkspan.Design\nRectangle { color: 'black'; width: 320; height: 240\n" + body +
                    "\n}",
                {}, blackPage);
    return scene.window().grabWindow().convertToFormat(QImage::Format_RGB32);
}

std::string atPlace(const std::string &type, const std::string &body)
{
    return type + " { x: 40; y: 30; width: 240; height: 180; " + body + " }";
}

// Half a pixel's worth of light: the graphics interface and a painter smooth an edge in different manners.
void expectShape(const QImage &drawn, const QImage &expected, int tolerance = 64)
{
    ASSERT_EQ(drawn.size(), expected.size());
    int greatest = 0;
    QPoint where;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            if (const int apart = std::abs(qGreen(drawn.pixel(x, y)) - qGreen(expected.pixel(x, y)));
                apart > greatest) {
                greatest = apart;
                where = {x, y};
            }
        }
    }
    EXPECT_LE(greatest, tolerance) << "at " << where.x() << ", " << where.y();
}

} // namespace

TEST(CornersOnDisplay, AreThoseOfAFill)
{
    expectShape(shownOnBlack(atPlace("LKRectangle", "radius: 50; color: 'white'")), paintedPlace(Qt::white));
}

TEST(CornersOnDisplay, AreThoseOfABorderAndTheFillWithinIt)
{
    const QImage drawn =
        shownOnBlack(atPlace("LKRectangle", "radius: 50; color: 'lime'; border.width: 6; border.color: 'red'"));
    QImage expected = paintedPlace(Qt::red);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath line;
    line.addPath(corners::path(QRectF(roundedPlace).adjusted(3, 3, -3, -3), placeRadius - 3));
    painter.fillPath(line, QColor(Qt::green));
    painter.strokePath(line, QPen(QColor(Qt::red), 6));
    painter.end();
    for (int y = 0; y < drawn.height(); ++y) { // 'lime' and Qt::green are one
        for (int x = 0; x < drawn.width(); ++x) {
            ASSERT_LE(std::abs(qRed(drawn.pixel(x, y)) - qRed(expected.pixel(x, y))), 120) << x << ", " << y;
        }
    }
    expectShape(drawn, expected, 120);
    EXPECT_EQ(drawn.pixelColor(42, 120), QColor(Qt::red));
    EXPECT_EQ(drawn.pixelColor(47, 120), QColor(Qt::green));
}

TEST(CornersOnDisplay, AreThoseOfALitCard)
{
    // Lit as by a pointer in its middle, but by nobody's hand.
    LK::instance().setTheme(LK::Theme::Light);
    const QImage drawn = shownOnBlack(
        atPlace("ShaderEffect", "property color fill: 'white'; property color border: 'white';"
                                "property color light: 'white'; property size card: Qt.size(width, height);"
                                "property point centre: Qt.point(0.5, 0.5); property real reach: 150;"
                                "property real cornerRadius: 50; property real spot: 0.15;"
                                "property real lit: 0.7; property real adds: 0;"
                                "fragmentShader: 'qrc:/qt/qml/Larkspan/Design/shaders/spotlight.frag.qsb'"));
    LK::instance().setTheme(LK::Theme::Dark);
    expectShape(drawn, paintedPlace(Qt::white), 90);
}

TEST(CornersOnDisplay, AreThoseOfARoundedPicture)
{
    const QImage drawn = shownOnBlack(atPlace("Rectangle", "color: 'white'; layer.enabled: true;"
                                                           "layer.effect: LKRounded { upper: 50; lower: 50 }"));
    expectShape(drawn, paintedPlace(Qt::white), 90);
    const QImage upperOnly = shownOnBlack(
        atPlace("Rectangle", "color: 'white'; layer.enabled: true; layer.effect: LKRounded { upper: 50 }"));
    EXPECT_EQ(upperOnly.pixelColor(41, 31), QColor(Qt::black));
    EXPECT_EQ(upperOnly.pixelColor(41, 208), QColor(Qt::white));
}
