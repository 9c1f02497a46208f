#include "classify/vision/PictureTensor.h"

#include <gmock/gmock.h>

using namespace larkspan;
using testing::Each;

namespace {

QImage filled(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

std::vector<float> plane(const PictureTensor &picture, std::size_t index)
{
    const auto size = picture.values().size() / 3;
    const auto part = picture.values().subspan(index * size, size);
    return {part.begin(), part.end()};
}

} // namespace

TEST(PictureTensor, FramesKeepTheirShapeInMultiplesOf32)
{
    EXPECT_EQ(networkSize({448, 252}, 448), QSize(448, 256));
    EXPECT_EQ(networkSize({252, 448}, 448), QSize(256, 448));
    EXPECT_EQ(networkSize({448, 336}, 448), QSize(448, 352));
    EXPECT_EQ(networkSize({224, 224}, 448), QSize(448, 448));
    EXPECT_EQ(networkSize({448, 187}, 448), QSize(448, 192));
}

TEST(PictureTensor, NoFrameIsTooThinToBeLookedAt)
{
    EXPECT_EQ(networkSize({448, 1}, 448), QSize(448, 32));
    EXPECT_EQ(networkSize({1, 1}, 448), QSize(448, 448));
}

TEST(PictureTensor, HoldsThePlanesRedGreenAndBlue)
{
    const PictureTensor picture(filled({50, 40}, QColor(255, 51, 0)), {64, 32}, PictureTensor::Range::Bytes);
    EXPECT_EQ(picture.width(), 64);
    EXPECT_EQ(picture.height(), 32);
    EXPECT_THAT(plane(picture, 0), Each(255.0f));
    EXPECT_THAT(plane(picture, 1), Each(51.0f));
    EXPECT_THAT(plane(picture, 2), Each(0.0f));
}

TEST(PictureTensor, CanRangeFromMinusOneToOne)
{
    const PictureTensor picture(filled({32, 32}, QColor(255, 0, 0)), {32, 32}, PictureTensor::Range::PlusMinus);
    EXPECT_THAT(plane(picture, 0), Each(1.0f));
    EXPECT_THAT(plane(picture, 1), Each(-1.0f));
}

TEST(PictureTensor, APartThatReachesOverTheEdgeIsBlackThere)
{
    const PictureTensor picture(filled({32, 32}, Qt::white), QRect(0, -32, 32, 64), {32, 64},
                                PictureTensor::Range::Bytes);
    const auto red = plane(picture, 0);
    EXPECT_THAT(std::vector(red.begin(), red.begin() + 32 * 32), Each(0.0f));
    EXPECT_THAT(std::vector(red.begin() + 32 * 32, red.end()), Each(255.0f));
}
