#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "design/AppIcon.h"
#include "design/LKPalette.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

namespace {

QColor over(const QColor &color, double opacity, const QColor &below)
{
    const auto mix = [opacity](int a, int b) { return static_cast<int>(a * opacity + b * (1 - opacity) + 0.5); };
    return {mix(color.red(), below.red()), mix(color.green(), below.green()), mix(color.blue(), below.blue())};
}

int distance(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
}

} // namespace

TEST(AppIcon, ThatShipsIsTheMarkAsItIsDrawn)
{
    for (const int size : appIconSizes()) {
        const QString file = QStringLiteral(LARKSPAN_RESOURCES) + u"/icons/hicolor/%1x%1/apps/larkspan.png"_s.arg(size);
        const QImage shipped = QImage(file).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        const QImage drawn = appIconImage(size);
        ASSERT_EQ(shipped.size(), drawn.size()) << file.toStdString();
        int greatest = 0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                greatest = std::max(greatest, distance(shipped.pixelColor(x, y), drawn.pixelColor(x, y)));
            }
        }
        EXPECT_LE(greatest, 6) << file.toStdString();
    }
}

// Its pixmaps are in memory for as long as the program runs.
TEST(AppIcon, OfAWindowIsAsDrawnInTheSizesUpTo128Pixels)
{
    const QIcon icon = windowIcon();
    std::vector<int> sizes;
    for (const QSize &size : icon.availableSizes()) {
        EXPECT_EQ(size.width(), size.height());
        EXPECT_EQ(icon.pixmap(size).toImage(), appIconImage(size.width())) << size.width();
        sizes.push_back(size.width());
    }
    EXPECT_THAT(sizes, testing::UnorderedElementsAre(16, 22, 24, 32, 48, 64, 128));
}

// With as much room as it asks for: the radius, 0.15 of the side, is the blur's standard deviation.
TEST(AppIcon, HasAShadowAsWideAsAnyShadowOfItsRadius)
{
    constexpr int side = 400;
    constexpr int room = 200;
    QImage image(side + 2 * room, side + 2 * room, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(room, room);
    paintAppIcon(painter, side, LKPalette::dark().accent, room);
    painter.end();
    const auto opacityAt = [&](double deviations) {
        const int distance = static_cast<int>(std::lround(deviations * 0.15 * side));
        return image.pixelColor(room - 1 - distance, room + side / 2).alphaF();
    };
    EXPECT_NEAR(opacityAt(0), 0.55 * 0.5, 0.01);
    EXPECT_NEAR(opacityAt(1), 0.55 * 0.1587, 0.01);
    EXPECT_NEAR(opacityAt(2), 0.55 * 0.0228, 0.01);
}

TEST(AppIcon, HasNothingOfItsShadowCutOffInAFile)
{
    const QImage icon = appIconImage(512);
    for (int at = 0; at < 512; ++at) {
        EXPECT_LE(icon.pixelColor(at, 0).alpha(), 2);
        EXPECT_LE(icon.pixelColor(at, 511).alpha(), 2);
        EXPECT_LE(icon.pixelColor(0, at).alpha(), 2);
    }
}

// At four times the base size, where a pixel is a quarter of a point of it.
TEST(AppIcon, HasTheProportionsOfTheMark)
{
    constexpr int side = 472;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QColor accent = LKPalette::dark().accent;
    paintAppIcon(painter, side, accent, side);
    painter.end();

    // The body is dark and whole, but for its corners of radius 32.
    EXPECT_EQ(image.pixelColor(side / 2, 440).alpha(), 255);
    EXPECT_LT(image.pixelColor(8, 8).alpha(), 160); // shadow alone
    EXPECT_EQ(image.pixelColor(40, 40).alpha(), 255);
    // From (0.2, 0.2, 0.227) at the top left to (0.07, 0.07, 0.078) at the bottom right, under the sheen.
    EXPECT_GT(image.pixelColor(60, 60).lightness(), image.pixelColor(412, 412).lightness() + 20);
    // Bars of 19 by 60, 10 apart: the left one from 35 to 54 and from 29 to 89 in points of the base.
    const QColor bar = image.pixelColor(4 * 44, side / 2);
    EXPECT_LT(distance(bar, over(accent, 0.85, image.pixelColor(side / 2, 440))), 60);
    EXPECT_GT(distance(image.pixelColor(4 * 36, side / 2), image.pixelColor(4 * 33, side / 2)), 100);
    EXPECT_GT(distance(image.pixelColor(4 * 53, side / 2), image.pixelColor(4 * 56, side / 2)), 100);
    EXPECT_GT(distance(image.pixelColor(4 * 44, 4 * 30), image.pixelColor(4 * 44, 4 * 27)), 100);
    // The right one is empty, with an edge.
    EXPECT_LT(distance(image.pixelColor(4 * 73, side / 2), image.pixelColor(4 * 90, side / 2)), 40);
}
