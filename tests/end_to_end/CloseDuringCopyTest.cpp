// The window is closed while large clips are on their way into their folders.
#include <fstream>

#include "tests/end_to_end/ProgramWindow.h"
#include "tests/end_to_end/XmlTexts.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Lt;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

constexpr std::size_t clipSize = 400'000'000; // bytes
// Together long enough in work for a person to close the window and to be asked, also on a fast disk.
constexpr int fewClips = 3;
// Also for the answer to come before the last one, which is why they aren't all copied.
constexpr int manyClips = 12;

// Makes a clip as large as a camera's by a last box that players pass over. It holds no zeros, which a copy leaves out.
void enlarge(const fs::path &clip)
{
    std::size_t left = clipSize - fs::file_size(clip);
    std::ofstream file(clip, std::ios::binary | std::ios::app);
    for (const int shift : {24, 16, 8, 0}) {
        file.put(static_cast<char>(left >> shift & 0xFF));
    }
    file << "free";
    const std::string filling(std::size_t{1} << 20, 'x');
    for (left -= 8; left > 0; left -= std::min(left, filling.size())) {
        file.write(filling.data(), static_cast<std::streamsize>(std::min(left, filling.size())));
    }
    file.close();
    EXPECT_EQ(fs::file_size(clip), clipSize);
}

bool sameContent(const fs::path &one, const fs::path &other)
{
    return QProcess::execute(u"cmp"_s, {u"-s"_s, QString::fromStdString(one), QString::fromStdString(other)}) == 0;
}

class CloseDuringCopyTest : public ProgramWindow
{
protected:
    void SetUp() override
    {
        makeMedia(clip(0), "-f lavfi -i color=c=gray:s=320x180:r=25:d=1 -c:v libx264 -preset ultrafast -pix_fmt "
                           "yuv420p");
        enlarge(clip(0));
    }

    fs::path clip(int number) const { return shoot / ("clip " + std::to_string(number) + ".mp4"); }
    fs::path event() const { return shoot / (shoot.path().filename().string() + ".fcpxml"); }

    // Closes the window while the first of so many clips is half copied. Returns with the question on show.
    void closeDuringCopy(int clipCount)
    {
        for (int i = 1; i < clipCount; ++i) {
            fs::create_hard_link(clip(0), clip(i));
        }
        startSorting();
        SortOptions options = engine().options();
        options.fileHandling = FileHandling::copy;
        options.verifyLevel = VerifyLevel::checksum;
        options.openEditorAfterExport = false;
        engine().setOptions(options);
        engine().sortFolder(FileUrl(shoot.path()));
        ASSERT_TRUE(reaches(StageKind::results));
        Desktop::click(shown(u"Export"_s));
        ASSERT_TRUE(waitUntil([this] { return !halves().empty(); }));
        program->window()->close();
        (void)shown(u"Footage is still being copied"_s);
        ASSERT_TRUE(engine().isCopying());
    }

    [[nodiscard]] bool closes()
    {
        return waitUntil([this] { return !program->window()->isVisible(); });
    }

    // The files below the shoot's bin folders with this extension.
    std::vector<fs::path> inFolders(const char *extension) const
    {
        std::vector<fs::path> files;
        for (const auto &entry : fs::recursive_directory_iterator(shoot.path())) {
            if (entry.path().extension() == extension && entry.path().parent_path() != shoot.path()) {
                files.push_back(entry.path());
            }
        }
        return files;
    }
    std::vector<fs::path> halves() const { return inFolders(".partial"); }
    std::vector<fs::path> copies() const { return inFolders(".mp4"); }

    // Whatever became of the copy.
    void expectNothingHalfMade(int clipCount) const
    {
        EXPECT_THAT(halves(), IsEmpty());
        for (const fs::path &copy : copies()) {
            EXPECT_TRUE(sameContent(copy, shoot / copy.filename())) << copy;
        }
        const auto footage = inXml(event(), "//media-rep/@src");
        EXPECT_THAT(footage, SizeIs(clipCount));
        for (const std::string &address : footage) {
            EXPECT_TRUE(fs::exists(QUrl(QString::fromStdString(address)).toLocalFile().toStdString())) << address;
        }
    }

    const TempFolder shoot;
};

} // namespace

TEST_F(CloseDuringCopyTest, StoppingLeavesWholeCopiesOnlyAndAnEventOfThemAndTheOtherOriginals)
{
    closeDuringCopy(manyClips);
    Desktop::click(shown(u"Stop and Close"_s));
    ASSERT_TRUE(closes());
    program.reset();
    EXPECT_THAT(copies(), SizeIs(AllOf(Ge(1), Lt(manyClips)))) << "the one in work was finished, and no more begun";
    expectNothingHalfMade(manyClips);
}

TEST_F(CloseDuringCopyTest, FinishingLeavesEveryCopyAndTheEvent)
{
    closeDuringCopy(fewClips);
    Desktop::click(shown(u"Finish, Then Close"_s));
    ASSERT_TRUE(closes());
    program.reset();
    EXPECT_THAT(copies(), SizeIs(fewClips));
    expectNothingHalfMade(fewClips);
}
