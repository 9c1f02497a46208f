#include "design/Corners.h"

#include <cmath>

#include <gmock/gmock.h>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "design/LK.h"
#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

double vectorLength(QPointF vector)
{
    return std::hypot(vector.x(), vector.y());
}

// The shape in white on black, as a painter draws it.
QImage paintedShape(const QPainterPath &shape, QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, Qt::white);
    return picture;
}

// The greatest difference of a pixel's brightness.
int greatestApart(const QImage &one, const QImage &other)
{
    EXPECT_EQ(one.size(), other.size());
    int greatest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            greatest = std::max(greatest, std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))));
        }
    }
    return greatest;
}

} // namespace

TEST(Corners, BeginToBendHalfARadiusBeforeAnArcWould)
{
    const corners::Curve whole = corners::curve(10, 100);
    EXPECT_EQ(whole.front(), QPointF(15.28665, 0));
    EXPECT_EQ(whole.back(), QPointF(0, 15.28665));
    // Both are as far from the corner along its diagonal.
    const QPointF middle = (whole[3] + 3 * whole[4] + 3 * whole[5] + whole[6]) / 8;
    EXPECT_NEAR(vectorLength(middle), (std::sqrt(2) - 1) * 10, 0.03);
    EXPECT_NEAR(middle.x(), middle.y(), 1e-9);
}

TEST(Corners, AreArcsWhereThereIsNoMoreRoomThanTheirRadius)
{
    for (const corners::OutlinePoint &point : corners::outline({20, 20}, 10, 4)) {
        EXPECT_NEAR(vectorLength(point.place - QPointF(10, 10)), 10, 0.01);
        EXPECT_NEAR(vectorLength(point.outward - (point.place - QPointF(10, 10)) / 10), 0, 0.01);
    }
    // A pill, however large a radius is asked for.
    EXPECT_EQ(corners::path({0, 0, 60, 20}, 999), corners::path({0, 0, 60, 20}, 10));
    EXPECT_EQ(corners::path({0, 0, 60, 20}, 10).boundingRect(), QRectF(0, 0, 60, 20));
}

TEST(Corners, HaveNoBendInTheirOutlineThatAnEyeCouldFind)
{
    const auto outline = corners::outline({200, 120}, 30, 1);
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const QPointF before = outline[i].outward;
        const QPointF after = outline[(i + 1) % outline.size()].outward;
        EXPECT_GT(QPointF::dotProduct(before, after), std::cos(15 * M_PI / 180)) << i;
    }
}

TEST(Corners, MoveInwardsAsALineOfThatWidth)
{
    constexpr QSizeF size(200, 120);
    for (const corners::OutlinePoint &point : corners::outline(size, 14, 1)) {
        EXPECT_NEAR(vectorLength(corners::movedIn(point, 2, size, 14) - point.place), 2, 1e-9);
        EXPECT_NEAR(vectorLength(corners::movedIn(point, -0.5, size, 14) - point.place), 0.5, 1e-9);
    }
    // Within a line that is wider than the radius the corner is a sharp one.
    for (const corners::OutlinePoint &point : corners::outline(size, 3, 1)) {
        const QPointF inner = corners::movedIn(point, 5, size, 3);
        EXPECT_TRUE(inner.x() == 5 || inner.x() == 195) << inner.x();
        EXPECT_TRUE(inner.y() == 5 || inner.y() == 115) << inner.y();
    }
}

TEST(Corners, AreSharpWithoutARadius)
{
    EXPECT_EQ(corners::outline({30, 20}, 0, 1).size(), 4U);
    EXPECT_EQ(corners::path({0, 0, 30, 20}, 0).boundingRect(), QRectF(0, 0, 30, 20));
    const corners::OutlinePoint upperLeft = corners::outline({30, 20}, 0, 1).front();
    EXPECT_EQ(corners::movedIn(upperLeft, 2, {30, 20}, 0), QPointF(2, 2));
}

// Drawn in memory, without a graphics interface.
TEST(LKRectangle, IsFilledWithinItsLine)
{
    Scene scene("import QtQuick\nimport Larkspan.Design\nRectangle { color: 'black'; width: 240; height: 160\n"
                "LKRectangle { x: 20; y: 20; width: 200; height: 120; radius: 40; color: 'white' } }",
                {}, {240, 160});
    const QImage whole = scene.window().grabWindow().convertToFormat(QImage::Format_RGB32);
    EXPECT_LE(greatestApart(whole, paintedShape(corners::path({20, 20, 200, 120}, 40), {240, 160})), 48);

    QQuickItem *shape = scene.root()->childItems().constFirst();
    auto *border = shape->property("border").value<QObject *>();
    border->setProperty("width", 10);
    border->setProperty("color", QColor(Qt::red));
    const QImage lined = scene.window().grabWindow();
    EXPECT_EQ(lined.pixelColor(24, 80), QColor(Qt::red));
    EXPECT_EQ(lined.pixelColor(120, 24), QColor(Qt::red));
    EXPECT_EQ(lined.pixelColor(32, 80), QColor(Qt::white));
    EXPECT_EQ(lined.pixelColor(120, 32), QColor(Qt::white));
    EXPECT_EQ(lined.pixelColor(22, 22), QColor(Qt::black));
}
