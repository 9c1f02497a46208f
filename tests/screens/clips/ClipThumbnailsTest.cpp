#include "screens/clips/ClipThumbnails.h"

#include <QtGui/QPainter>

#include "screens/bins/BinColors.h"
#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

using ClipThumbnailsTest = ModelTest;

QImage filled(QSize size, const QColor &color)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

bool isNear(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) < 4 && std::abs(a.green() - b.green()) < 4 && std::abs(a.blue() - b.blue()) < 4;
}

} // namespace

TEST_F(ClipThumbnailsTest, GivesAClipsFirstFrameFillingTheSizeAskedFor)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    clip->thumbnail = Thumbnail(filled({40, 20}, Qt::red));
    Q_EMIT engine.clipsChanged();
    QSize size;
    const QImage picture = pictures.requestImage(ClipThumbnails::urlOf(*clip).path().mid(1), &size, {16, 9});
    EXPECT_EQ(size, QSize(16, 9));
    EXPECT_EQ(picture.size(), QSize(16, 9));
    EXPECT_TRUE(isNear(picture.pixelColor(0, 0), Qt::red));
    EXPECT_TRUE(isNear(picture.pixelColor(15, 8), Qt::red));
}

TEST_F(ClipThumbnailsTest, FillsASizeOfAnotherShapeWithAFramesMiddleWhereItIsToBeCropped)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    QImage frame = filled({160, 80}, Qt::red);
    QPainter(&frame).fillRect(40, 0, 80, 80, Qt::blue); // as wide as it is high, in the middle
    clip->thumbnail = Thumbnail(frame);
    Q_EMIT engine.clipsChanged();
    const QString path = ClipThumbnails::urlOf(*clip).path().mid(1) + u"?radius=0&crop"_s;
    const QImage square = pictures.requestImage(path, nullptr, {40, 40});
    EXPECT_EQ(square.size(), QSize(40, 40));
    EXPECT_TRUE(isNear(square.pixelColor(3, 20), Qt::blue));
    EXPECT_TRUE(isNear(square.pixelColor(36, 20), Qt::blue));
    const QImage wide = pictures.requestImage(path, nullptr, {160, 40}); // as wide as the frame, half as high
    EXPECT_TRUE(isNear(wide.pixelColor(20, 20), Qt::red));
    EXPECT_TRUE(isNear(wide.pixelColor(60, 20), Qt::blue));
    EXPECT_TRUE(isNear(wide.pixelColor(100, 20), Qt::blue));
    EXPECT_TRUE(isNear(wide.pixelColor(140, 20), Qt::red));
    clip->thumbnail = Thumbnail();
    Q_EMIT engine.clipsChanged();
    const QString colours = ClipThumbnails::urlOf(*clip).path().mid(1) + u"?radius=0&crop"_s;
    EXPECT_EQ(pictures.requestImage(colours, nullptr, {40, 40}).size(), QSize(40, 40));
}

TEST_F(ClipThumbnailsTest, RoundsTheCornersAskedFor)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const QString path = ClipThumbnails::urlOf(*engine.clips().front()).path().mid(1);
    const QImage all = pictures.requestImage(path + u"?radius=8"_s, nullptr, {100, 50});
    EXPECT_EQ(all.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(all.pixelColor(99, 49).alpha(), 0);
    EXPECT_EQ(all.pixelColor(50, 0).alpha(), 255);
    const QImage top = pictures.requestImage(path + u"?radius=8&top"_s, nullptr, {100, 50});
    EXPECT_EQ(top.pixelColor(99, 0).alpha(), 0);
    EXPECT_EQ(top.pixelColor(0, 49).alpha(), 255);
}

TEST_F(ClipThumbnailsTest, FrostsAPartBlurredDarkerAndNothingBeyondThePicture)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    QImage stripes = filled({100, 50}, Qt::white);
    for (int x = 0; x < 100; x += 2) {
        QPainter(&stripes).fillRect(x, 0, 1, 50, Qt::black);
    }
    clip->thumbnail = Thumbnail(stripes);
    Q_EMIT engine.clipsChanged();
    const QString path = ClipThumbnails::urlOf(*clip).path().mid(1);
    QSize size;
    const QImage part = pictures.requestImage(path + u"?frosted=10,20,40,16"_s, &size, {100, 50});
    EXPECT_EQ(size, QSize(40, 16));
    ASSERT_EQ(part.size(), QSize(40, 16));
    const double grey = 0.5 * (1 - 0.35);
    for (int x = 2; x < 38; ++x) { // no stripe is left
        EXPECT_NEAR(part.pixelColor(x, 8).lightnessF(), grey, 0.05) << x;
    }
    // The part that reaches beyond isn't counted.
    for (const QString &odd :
         {u"?frosted=90,20,40,16"_s, u"?frosted=-1,0,4,4"_s, u"?frosted=1,2,3"_s, u"?frosted=a,b,c,d"_s}) {
        EXPECT_EQ(pictures.requestImage(path + odd, nullptr, {100, 50}).size(), QSize(100, 50)) << odd.toStdString();
    }
}

TEST_F(ClipThumbnailsTest, StandsInTheBinsColoursForAClipWithoutAFrame)
{
    makeClips({"dark 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const QString path = ClipThumbnails::urlOf(*engine.clips().front()).path().mid(1);
    const QImage picture = pictures.requestImage(path, nullptr, {160, 90});
    const auto [first, second] = binGradientColors(u"Unsorted"_s);
    EXPECT_TRUE(isNear(picture.pixelColor(0, 0), first));
    EXPECT_TRUE(isNear(picture.pixelColor(159, 89), second));
}

TEST_F(ClipThumbnailsTest, ForgetsThePicturesOfClipsThatAreGone)
{
    makeClips({"kitchen 1"});
    ClipThumbnails pictures(engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    clip->thumbnail = Thumbnail(filled({4, 4}, Qt::red));
    Q_EMIT engine.clipsChanged();
    const QString path = ClipThumbnails::urlOf(*clip).path().mid(1);
    ASSERT_TRUE(isNear(pictures.requestImage(path, nullptr, {8, 8}).pixelColor(4, 4), Qt::red));
    engine.reset();
    EXPECT_FALSE(isNear(pictures.requestImage(path, nullptr, {8, 8}).pixelColor(4, 4), Qt::red));
}
