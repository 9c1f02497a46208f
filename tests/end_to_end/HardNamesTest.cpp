// Names that file systems allow and few programs like.
#include "tests/end_to_end/ProgramWindow.h"
#include "tests/end_to_end/XmlTexts.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::SizeIs;
using testing::UnorderedElementsAreArray;

namespace fs = std::filesystem;

namespace {

class HardNamesTest : public ProgramWindow
{};

} // namespace

TEST_F(HardNamesTest, ClipsWithLongRightToLeftAndEmojiNamesAreSortedExportedAndReopenedWithoutTheirFootage)
{
    const TempFolder folder;
    const fs::path shoot = folder / "בית & 🏠";
    fs::create_directory(shoot);
    const std::vector<std::string> names{std::string(251, 'n') + ".mp4", "מטבח 2.mp4", "🛁 bath.mp4"};
    std::vector<std::string> addresses;
    for (const std::string &name : names) {
        makeMedia(folder / "clip.mp4", "-y -f lavfi -i color=c=gray:s=320x180:r=25:d=1 -c:v libx264 -preset ultrafast "
                                       "-pix_fmt yuv420p");
        fs::rename(folder / "clip.mp4", shoot / name); // ffmpeg's own temporary name would be too long
        addresses.push_back(FileUrl(shoot / name).absoluteString().toStdString());
    }
    startSorting();
    SortOptions options = engine().options();
    options.openEditorAfterExport = false;
    engine().setOptions(options);
    Desktop::dragFiles({shoot}, shown(u"Drop a shoot folder here"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    EXPECT_THAT(engine().clips(), SizeIs(3));
    Desktop::click(shown(u"Unsorted"_s));
    (void)shown(QString(251, u'n'));
    (void)shown(u"מטבח 2"_s);
    (void)shown(u"🛁 bath"_s);
    Desktop::click(shown(u"Export"_s));
    ASSERT_TRUE(reaches(StageKind::done));
    EXPECT_THAT(inXml(shoot / "בית & 🏠.fcpxml", "//media-rep/@src"), UnorderedElementsAreArray(addresses));

    fs::remove_all(shoot);
    program.reset();
    startSorting();
    Desktop::click(shown(u"Projects"_s));
    Desktop::click(shown(u"בית & 🏠"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    Desktop::click(shown(u"Unsorted"_s));
    (void)shown(u"🛁 bath"_s);
    Desktop::click(shown(u"מטבח 2"_s));
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s);
    Desktop::click(shown(u"Done"_s));
    EXPECT_TRUE(goes(u"Done"_s));
}
