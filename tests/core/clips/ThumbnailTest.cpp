#include "core/clips/Thumbnail.h"

#include <random>

#include <gmock/gmock.h>

using namespace larkspan;

namespace {

QImage filled(QSize size, const QColor &color)
{
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(color);
    return picture;
}

// Nothing is harder to compress.
QImage noise(QSize size)
{
    QImage picture(size, QImage::Format_RGB888);
    std::mt19937 random(7);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, random());
        }
    }
    return picture;
}

bool isNear(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 30;
}

} // namespace

TEST(Thumbnail, OfNothingIsNoneAndGivesNothing)
{
    EXPECT_TRUE(Thumbnail().isNull());
    EXPECT_TRUE(Thumbnail(QImage()).isNull());
    EXPECT_EQ(Thumbnail().key(), 0u);
    EXPECT_TRUE(Thumbnail().stretchedTo({16, 9}).isNull());
}

TEST(Thumbnail, ShowsItsFrameInTheSizeAskedFor)
{
    const Thumbnail thumbnail(filled({448, 252}, Qt::blue));
    EXPECT_EQ(thumbnail.stretchedTo({}).size(), QSize(448, 252));
    EXPECT_EQ(thumbnail.size(), QSize(448, 252));
    for (const QSize size : {QSize(168, 95), QSize(96, 54), QSize(760, 428)}) {
        const QImage picture = thumbnail.stretchedTo(size);
        EXPECT_EQ(picture.size(), size);
        EXPECT_TRUE(isNear(picture.pixelColor(size.width() / 2, size.height() / 2), Qt::blue));
    }
}

TEST(Thumbnail, OfATallFrameIsStretchedOverAWideSizeAndLosesNothing)
{
    QImage frame = filled({252, 448}, Qt::red);
    for (int y = 224; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x) {
            frame.setPixelColor(x, y, Qt::green);
        }
    }
    const QImage picture = Thumbnail(frame).stretchedTo({160, 40});
    ASSERT_EQ(picture.size(), QSize(160, 40));
    for (const int x : {2, 80, 157}) {
        EXPECT_TRUE(isNear(picture.pixelColor(x, 2), Qt::red));
        EXPECT_TRUE(isNear(picture.pixelColor(x, 15), Qt::red));
        EXPECT_TRUE(isNear(picture.pixelColor(x, 24), Qt::green));
        EXPECT_TRUE(isNear(picture.pixelColor(x, 37), Qt::green));
    }
}

TEST(Thumbnail, TakesNoMoreThanItsBoundWhateverItShows)
{
    for (const QSize size : {QSize(448, 252), QSize(448, 448), QSize(2000, 1500)}) {
        const Thumbnail thumbnail(noise(size));
        EXPECT_FALSE(thumbnail.isNull());
        EXPECT_LE(thumbnail.byteCount(), Thumbnail::mostBytes);
        EXPECT_EQ(thumbnail.stretchedTo({16, 9}).size(), QSize(16, 9));
    }
}

TEST(Thumbnail, OfAFrameFullOfDetailLosesQualityAndKeepsItsPixels)
{
    const Thumbnail thumbnail(noise({448, 252}));
    EXPECT_EQ(thumbnail.stretchedTo({}).size(), QSize(448, 252));
}

TEST(Thumbnail, OfAFrameThatDoesNotFitIsHalvedUntilItDoes)
{
    const QImage kept = Thumbnail(noise({2000, 1500})).stretchedTo({});
    EXPECT_THAT(kept.width(), testing::AnyOf(1000, 500, 250));
}

TEST(Thumbnail, IsToldApartFromEveryOtherAndTheSameAsItsCopies)
{
    const Thumbnail one(filled({4, 4}, Qt::red));
    const Thumbnail other(filled({4, 4}, Qt::red));
    const Thumbnail copy = one; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_NE(one.key(), other.key());
    EXPECT_EQ(one.key(), copy.key());
}
