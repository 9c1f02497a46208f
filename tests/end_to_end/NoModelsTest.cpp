#include <QtQuick/QQuickWindow>

#include "shell/LarkspanApp.h"
#include "tests/support/Desktop.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Items.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

TEST(WithoutModels, TheWindowSaysSoAndEveryClipIsFiledForALook)
{
    const TempFolder folder;
    makeMedia(folder / "clip.mp4", "-f lavfi -i testsrc2=s=320x180:r=25:d=1 -c:v libx264 -pix_fmt yuv420p");
    LarkspanApp program(folder / "no models here");
    ASSERT_TRUE(program.open());
    ASSERT_TRUE(Desktop::awaitWindow(*program.window()));
    program.state().finishIntro();
    program.state().openTool(u"binnacle"_s);
    EXPECT_TRUE(waitUntil([&] { return !program.window()->property("classifierProblem").toString().isEmpty(); }));
    const QString problem = program.window()->property("classifierProblem").toString();
    EXPECT_TRUE(problem.contains(u"no models here"_s)) << problem.toStdString();
    EXPECT_TRUE(waitUntil([&] { return findShown(program.window()->contentItem(), problem) != nullptr; }));

    SortEngine &engine = program.engine();
    engine.sortFolder(FileUrl(folder.path()));
    EXPECT_TRUE(waitUntil([&] { return engine.stage().kind == SortEngine::StageKind::results; }));
    EXPECT_THAT(engine.binCounts(), ElementsAre(BinCount{u"Unsorted"_s, 1}));
}

// They are read by the first sort, so what is wrong with them comes up then.
TEST(WithBrokenModels, TheWindowNamesTheFileOnceASortNeedsIt)
{
    const TempFolder folder;
    makeMedia(folder / "clip.mp4", "-f lavfi -i testsrc2=s=320x180:r=25:d=1 -c:v libx264 -pix_fmt yuv420p");
    const TempFolder models;
    for (const char *file : {"objects.onnx", "scene.onnx", "pose.onnx", "face.onnx", "rooms.head"}) {
        (void)models.write(file, "no model");
    }
    LarkspanApp program(models.path());
    ASSERT_TRUE(program.open());
    SortEngine &engine = program.engine();
    engine.sortFolder(FileUrl(folder.path()));
    EXPECT_TRUE(waitUntil([&] { return engine.stage().kind == SortEngine::StageKind::results; }));
    EXPECT_TRUE(waitUntil(
        [&] { return program.window()->property("classifierProblem").toString().contains(u"objects.onnx"_s); }));
    EXPECT_THAT(engine.binCounts(), ElementsAre(BinCount{u"Unsorted"_s, 1}));
}
