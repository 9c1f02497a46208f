#include <gmock/gmock.h>

#include <sys/stat.h>

#include "classify/ClipProbe.h"
#include "classify/FrameSampler.h"
#include "tests/classify/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::IsEmpty;

namespace {

// The answer for what isn't readable media at all.
void expectNothingRead(const std::filesystem::path &path)
{
    const ClipPtr clip = probeClip(FileUrl(path));
    EXPECT_EQ(clip->duration, 0.0);
    EXPECT_EQ(clip->naturalSize, QSizeF(0, 0));
    EXPECT_EQ(clip->displaySize, QSizeF(0, 0));
    EXPECT_EQ(clip->frameDurationValue, 1001);
    EXPECT_EQ(clip->frameDurationScale, 60000);
    EXPECT_EQ(clip->cameraModel, QString());
    EXPECT_EQ(clip->creationDate, dateFromFileSystem(fileDates(FileUrl(path))));
    EXPECT_THAT(sampleFrames(*clip, 4, 448), IsEmpty());
}

} // namespace

TEST(BrokenMedia, AnEmptyFileATextAndAFolderGiveDefaultsAndNoFrames)
{
    const TempFolder folder;
    expectNothingRead(folder.write("empty.mov"));
    expectNothingRead(folder.write("text.mp4", "Not a movie at all.\n"));
    expectNothingRead(folder.write("x.mov/inside.txt").parent_path());
}

TEST(BrokenMedia, ANamedPipeCalledAMovieDoesNotHang)
{
    const TempFolder folder;
    ASSERT_EQ(mkfifo((folder / "clip.mov").c_str(), 0600), 0);
    expectNothingRead(folder / "clip.mov");
}
