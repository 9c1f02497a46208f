// On a display: what a clip shows while it plays.
#include <QtTest/QTest>

#include "core/engine/SortEngine.h"
#include "screens/clips/ClipThumbnails.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr const char *greenClip = "-f lavfi -i color=c=green:s=640x360:r=25:d=20 -f lavfi -i sine=d=20 -c:v libx264 "
                                  "-preset ultrafast -pix_fmt yuv420p -c:a aac";

// The preview over made clips of one colour.
class PlayerViewTest : public SortEngineTest
{
protected:
    void show(const std::filesystem::path &clip, const QImage &still = {})
    {
        std::filesystem::copy_file(clip, folder / "kitchen 1.mov");
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        scene.emplace("import Larkspan.Screens\nClipPreviewModal {}",
                      QVariantMap{{u"engine"_s, QVariant::fromValue(&engine)}}, QSize(760, 494));
        scene->engine().addImageProvider(ClipThumbnails::providerName(), new ClipThumbnails(engine));
        if (!still.isNull()) {
            engine.clips().front()->thumbnail = Thumbnail(still);
        }
        engine.setPreviewClip(engine.clips().front());
    }
    [[nodiscard]] QColor colorAt(int x, int y) const { return scene->window().grabWindow().pixelColor(x, y); }
    [[nodiscard]] static bool isGreen(const QColor &color) { return color.green() > 90 && color.red() < 60; }
    [[nodiscard]] static bool isBlack(const QColor &color)
    {
        return color.green() < 20 && color.red() < 20 && color.blue() < 20;
    }

    SortEngine engine{seams()};
    std::optional<Scene> scene;
};

} // namespace

TEST_F(PlayerViewTest, NothingIsPlayedBeforePlayIsPressedAndThenThePictureIsThere)
{
    show(sharedMedia("green.mp4", greenClip));
    EXPECT_FALSE(isGreen(colorAt(380, 100)));
    scene->click(u"Play"_s);
    EXPECT_TRUE(waitUntil([&] { return isGreen(colorAt(380, 100)); }));
    EXPECT_TRUE(isGreen(colorAt(10, 100)));
    engine.closePreview();
    EXPECT_TRUE(waitUntil([&] { return !isGreen(colorAt(380, 100)); }));
}

TEST_F(PlayerViewTest, APictureOfSixteenToNineLeavesNoLineAtTheEdgesOfItsPlace)
{
    QImage still(448, 252, QImage::Format_RGB888);
    still.fill(Qt::red);
    show(sharedMedia("green.mp4", greenClip), still);
    scene->click(u"Play"_s);
    QTest::mouseMove(&scene->window(), QPoint(380, 460)); // or the controls lie over its lower end
    EXPECT_TRUE(waitUntil([&] { return isGreen(colorAt(380, 427)); }));
    EXPECT_TRUE(isGreen(colorAt(380, 2)));
}

TEST_F(PlayerViewTest, AnUprightClipKeepsItsAspect)
{
    show(sharedMedia("tall.mp4", "-f lavfi -i color=c=green:s=360x640:r=25:d=20 -c:v libx264 -preset ultrafast "
                                 "-pix_fmt yuv420p"));
    scene->click(u"Play"_s);
    EXPECT_TRUE(waitUntil([&] { return isGreen(colorAt(380, 100)); }));
    EXPECT_TRUE(isBlack(colorAt(100, 100)));
    EXPECT_TRUE(isBlack(colorAt(660, 100)));
}

TEST_F(PlayerViewTest, TheWindowMayGoWhileAClipPlays)
{
    show(sharedMedia("green.mp4", greenClip));
    scene->click(u"Play"_s);
    EXPECT_TRUE(waitUntil([&] { return isGreen(colorAt(380, 100)); }));
    scene.reset();
}
