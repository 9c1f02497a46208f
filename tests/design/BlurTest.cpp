#include "design/Blur.h"

#include <cmath>

#include <gtest/gtest.h>

using namespace larkspan;

namespace {

constexpr double opaque = 255;

// The share of a Gaussian curve of deviation 1 that is below x.
double shareBelow(double x)
{
    return std::erfc(-x / std::sqrt(2)) / 2;
}

double sumOf(const QImage &alpha)
{
    double sum = 0;
    for (int y = 0; y < alpha.height(); ++y) {
        for (int x = 0; x < alpha.width(); ++x) {
            sum += qAlpha(alpha.pixel(x, y));
        }
    }
    return sum;
}

} // namespace

TEST(Blur, TurnsAnEdgeIntoTheSumOfAGaussianCurve)
{
    for (const double deviation : {1.0, 2.5, 6.0}) {
        for (const bool upright : {true, false}) {
            QImage image(80, 80, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            for (int y = 0; y < 80; ++y) {
                for (int x = 0; x < 80; ++x) {
                    image.setPixel(x, y, (upright ? x : y) < 40 ? 0 : qRgba(255, 255, 255, 255));
                }
            }
            const QImage soft = blurred(image, deviation);
            ASSERT_EQ(soft.size(), image.size());
            for (int at = 20; at < 60; ++at) { // further out than the blur of the image's own edges reaches
                const QRgb pixel = upright ? soft.pixel(at, 40) : soft.pixel(40, at);
                const double expected = opaque * shareBelow((at + 0.5 - 40) / deviation);
                EXPECT_NEAR(qAlpha(pixel), expected, 2.5) << deviation << " at " << at;
            }
        }
    }
}

TEST(Blur, SpreadsASquareEvenlyToAllSidesAndKeepsTheWholeOfIt)
{
    QImage square(61, 61, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    for (int y = 25; y <= 35; ++y) {
        for (int x = 25; x <= 35; ++x) {
            square.setPixel(x, y, qRgba(255, 255, 255, 255));
        }
    }
    const QImage soft = blurred(square, 3);
    EXPECT_NEAR(sumOf(soft) / sumOf(square), 1, 0.01);
    for (int i = 0; i < 61; ++i) {
        EXPECT_EQ(soft.pixel(i, 30), soft.pixel(60 - i, 30));
        EXPECT_NEAR(qAlpha(soft.pixel(i, 30)), qAlpha(soft.pixel(30, i)), 1);
    }
    EXPECT_EQ(qAlpha(soft.pixel(30, 25 - 10)), 0) << "the curve ends at three deviations";
}

TEST(Blur, KeepsEachChannelOfAColourApart)
{
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(qRgba(200, 0, 50, 255));
    EXPECT_EQ(blurred(image, 2).pixel(20, 20), qRgba(200, 0, 50, 255));
}

TEST(Blur, OfNoDeviationChangesNothing)
{
    QImage image(3, 1, QImage::Format_Grayscale8);
    image.fill(0);
    image.setPixelColor(1, 0, Qt::white);
    EXPECT_EQ(blurred(image, 0), image);
    EXPECT_TRUE(blurred(QImage(), 2).isNull());
}

TEST(Blur, IsDrawnSmallWhereItIsWide)
{
    EXPECT_EQ(blurScale(0, 2), 2);
    EXPECT_EQ(blurScale(2, 2), 2);
    EXPECT_EQ(blurScale(24, 2), 0.25);
}

TEST(BlurredShape, HasHalfOfItsColourAtTheEdgeWhateverTheScale)
{
    QPainterPath square;
    square.addRect(30, 30, 60, 60);
    for (const double scale : {0.5, 1.0, 2.0}) {
        const QImage picture = blurredShape(square, QColor::fromRgbF(1, 0, 0, 0.5f), {10, 10, 100, 100}, 4, scale);
        EXPECT_EQ(picture.size(), (QSizeF(100, 100) * scale).toSize());
        const auto alphaAt = [&](double x, double y) {
            return picture.pixelColor(static_cast<int>((x - 10) * scale), static_cast<int>((y - 10) * scale)).alphaF();
        };
        EXPECT_NEAR(alphaAt(60, 60), 0.5, 0.01);
        EXPECT_NEAR((alphaAt(30 - 0.1, 60) + alphaAt(30 + 0.1, 60)) / 2, 0.25, 0.01);
        EXPECT_NEAR(alphaAt(12, 60), 0, 0.01);
        EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() / 2).green(), 0);
    }
}
