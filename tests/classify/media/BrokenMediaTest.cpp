#include <atomic>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "tests/classify/media/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

namespace {

// The answer for what isn't readable media at all.
void expectNothingRead(const std::filesystem::path &path)
{
    const ClipPtr clip = probeClip(FileUrl(path));
    EXPECT_EQ(clip->duration, 0.0) << path;
    EXPECT_EQ(clip->naturalSize, QSizeF(0, 0)) << path;
    EXPECT_EQ(clip->displaySize, QSizeF(0, 0)) << path;
    EXPECT_EQ(clip->frameDurationValue, 1001) << path;
    EXPECT_EQ(clip->frameDurationScale, 60000) << path;
    EXPECT_EQ(clip->cameraModel, QString()) << path;
    EXPECT_EQ(clip->creationDate, dateFromFileSystem(fileDates(FileUrl(path)))) << path;
    EXPECT_THAT(sampleFrames(*clip, 4, 448), IsEmpty()) << path;
}

// Four seconds with the index in front, a key frame a second.
const std::filesystem::path &indexFirst()
{
    return sharedMedia("indexfirst.mp4", picture("160x90", "10", "4") + h264 + "-g 10 -movflags faststart");
}

const std::filesystem::path &indexLast()
{
    return sharedMedia("indexlast.mp4", picture("160x90", "10", "4") + h264 + "-g 10");
}

const std::filesystem::path &stream()
{
    return sharedMedia("broken.mts", picture("160x90", "10", "4") + h264 + "-g 10 -f mpegts");
}

} // namespace

TEST(BrokenMedia, AnEmptyFileATextAndAFolderGiveDefaultsAndNoFrames)
{
    const TempFolder folder;
    expectNothingRead(folder.write("empty.mov"));
    expectNothingRead(folder.write("text.mp4", "Not a movie at all.\n"));
    expectNothingRead(folder.write("long text.mp4", std::string(200'000, 'a')));
    expectNothingRead(folder.write("x.mov/inside.txt").parent_path());
    expectNothingRead(folder / "missing.mov");
}

TEST(BrokenMedia, APlaylistNamedAsAClipOpensNothingElse)
{
    const TempFolder folder;
    const std::string target = indexLast().native();
    expectNothingRead(folder.write("list.mp4", "ffconcat version 1.0\nfile '" + target + "'\n"));
    expectNothingRead(folder.write("list.mov", "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n" + target + "\n"));
}

TEST(BrokenMedia, ANamedPipeCalledAMovieDoesNotHang)
{
    const TempFolder folder;
    ASSERT_EQ(mkfifo((folder / "clip.mov").c_str(), 0600), 0);
    expectNothingRead(folder / "clip.mov");
}

TEST(BrokenMedia, ALinkToItselfAndADeviceAreNoMedia)
{
    const TempFolder folder;
    std::filesystem::create_symlink(folder / "loop.mov", folder / "loop.mov");
    expectNothingRead(folder / "loop.mov");
    std::filesystem::create_symlink("/dev/zero", folder / "zero.mov");
    expectNothingRead(folder / "zero.mov");
}

TEST(BrokenMedia, NamesOfAnyBytesOpen)
{
    const TempFolder folder;
    const std::string names[] = {"\xF0\x9F\x8F\xA0 house.mp4",  "new\nline.mp4", "100%25.mp4",  "a & b.mp4",
                                 "it's \"here\".mp4",           "\xff\xfe.mp4",  "a:b?c#d.mp4", "file:x.mp4",
                                 std::string(251, 'n') + ".mp4"};
    for (const std::string &name : names) {
        std::filesystem::copy_file(indexFirst(), folder / name);
        const ClipPtr clip = probeClip(FileUrl(folder / name));
        EXPECT_EQ(clip->duration, 4.0) << name;
        EXPECT_THAT(sampleFrames(*clip, 4, 448), SizeIs(4)) << name;
    }
}

TEST(BrokenMedia, ATruncatedFileWithoutItsIndexGivesDefaults)
{
    const TempFolder folder;
    const std::string content = bytesOf(indexLast());
    expectNothingRead(folder.write("clip.mp4", content.substr(0, content.size() / 2)));
}

TEST(BrokenMedia, AFileCutInTheMiddleGivesTheFramesThatAreThere)
{
    const TempFolder folder;
    const std::string content = bytesOf(indexFirst());
    const ClipPtr movie = probeClip(FileUrl(folder.write("clip.mp4", content.substr(0, content.size() * 6 / 10))));
    EXPECT_EQ(movie->duration, 4.0);
    EXPECT_THAT(sampleFrames(*movie, 4, 448), SizeIs(AllOf(Ge(1u), Le(3u))));

    const std::string packets = bytesOf(stream());
    const ClipPtr cut = probeClip(FileUrl(folder.write("clip.mts", packets.substr(packets.size() / 3 + 77))));
    EXPECT_THAT(cut->duration, AllOf(Ge(1.5), Le(3.5)));
    EXPECT_THAT(sampleFrames(*cut, 4, 448), SizeIs(Ge(1u)));
}

TEST(BrokenMedia, APictureOfAHundredThousandPixelsASideIsNotBelieved)
{
    const TempFolder folder;
    const auto &plain = sharedMedia("huge.avi", picture("160x90", "10", "1") + "-c:v rawvideo -pix_fmt bgr24");
    const std::string side("\xa0\x86\x01\x00", 4);
    const auto file = folder.write("clip.avi", patched(bytesOf(plain), "strf", 12, side + side));
    const ClipPtr clip = probeClip(FileUrl(file));
    EXPECT_EQ(clip->naturalSize, QSizeF(0, 0));
    EXPECT_EQ(clip->displaySize, QSizeF(0, 0));
    EXPECT_EQ(clip->duration, 1.0) << "the rest of the header still counts";
    EXPECT_THAT(sampleFrames(*clip, 4, 448), IsEmpty());
}

TEST(BrokenMedia, AMovieThatClaimsTheLargestPictureOfItsFormatIsNotBelieved)
{
    const TempFolder folder;
    const auto file = folder.write("clip.mp4", patched(bytesOf(indexLast()), "stsd", 44, "\xff\xff\xff\xff"));
    const ClipPtr clip = probeClip(FileUrl(file));
    EXPECT_EQ(clip->naturalSize, QSizeF(0, 0));
    EXPECT_THAT(sampleFrames(*clip, 4, 448), IsEmpty());
}

TEST(BrokenMedia, AFileThatVanishesWhileItIsReadIsReadToItsEnd)
{
    const TempFolder folder;
    std::filesystem::copy_file(indexFirst(), folder / "clip.mp4");
    const FileUrl url(folder / "clip.mp4");
    const auto file = MediaFile::open(url, MediaFile::Purpose::Sample, {});
    std::filesystem::remove(url.path());
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->size(), static_cast<std::int64_t>(std::filesystem::file_size(indexFirst())));
    expectNothingRead(url.path());
}

TEST(BrokenMedia, AFileThatShrinksAndGrowsWhileItIsReadGivesWhatIsThere)
{
    const TempFolder folder;
    const std::string content = bytesOf(stream());
    const auto path = folder.write("clip.mts", content);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (std::size_t step = 0; !done; ++step) {
            std::filesystem::resize_file(path, content.size() * (step % 7) / 7);
            std::ofstream(path, std::ios::binary | std::ios::app).write(content.data(), 50'000);
        }
    });
    for (int i = 0; i < 20; ++i) {
        const ClipPtr clip = probeClip(FileUrl(path));
        EXPECT_THAT(clip->duration, Ge(0.0));
        EXPECT_THAT(sampleFrames(*clip, 4, 448), SizeIs(Le(4u)));
    }
    done = true;
    writer.join();
}
