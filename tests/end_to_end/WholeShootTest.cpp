// A shoot from the drop to the folders, and back the next day.
#include <map>

#include "tests/end_to_end/ProgramWindow.h"
#include "tests/end_to_end/XmlTexts.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

// Every file below a folder with its content, by its place in there.
std::map<std::string, std::string> filesIn(const fs::path &folder)
{
    std::map<std::string, std::string> files;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.emplace(entry.path().lexically_relative(folder), bytesOf(entry.path()));
        }
    }
    return files;
}

// A user who has never started the program.
class WholeShootTest : public ProgramWindow
{
protected:
    // The facts of a clip once it is settled.
    struct Clip
    {
        std::string file;
        std::vector<QString> bins;
        bool isUnderReview = false;

        friend bool operator==(const Clip &, const Clip &) = default;
    };

    void SetUp() override
    {
        fs::create_directory(shoot);
        int minute = 0;
        for (const char *clip : {"clip 2.mp4", "clip 10.mov", "clip 11.mp4", "DJI_0001.MP4"}) {
            makeMedia(shoot / clip,
                      "-f lavfi -i color=c=gray:s=320x180:r=25:d=1 -c:v libx264 -preset ultrafast -pix_fmt "
                      "yuv420p -metadata creation_time=2026-11-20T09:0" +
                          std::to_string(minute++) + ":00Z");
        }
    }

    void openSortTool()
    {
        start();
        Desktop::click(shown(u"Open Binnacle"_s));
        (void)shown(u"Drop a shoot folder here"_s);
    }

    void chooseInPreferences(const QString &setting, const QString &choice)
    {
        choose(setting, choice);
        ASSERT_TRUE(waitUntil([&] { return control(setting).property("shownLabel") == choice; }));
    }

    void typeBin(const QString &letters)
    {
        for (const QChar letter : letters) {
            Desktop::key(letter);
        }
        Desktop::key(u"Return"_s);
    }

    [[nodiscard]] bool leavesReview(int left)
    {
        return waitUntil([&] { return engine().reviewCount() == left; });
    }

    std::vector<Clip> clips()
    {
        std::vector<Clip> all;
        for (const ClipPtr &clip : engine().clips()) {
            all.push_back({.file = clip->url.path().filename(),
                           .bins = clip->bins(),
                           .isUnderReview = engine().isUnderReview(*clip)});
        }
        return all;
    }

    const TempFolder scratch;
    const fs::path shoot = scratch / "Villa & Söhne";
};

} // namespace

TEST_F(WholeShootTest, IsSortedSettledCopiedAndExportedAndFoundAsItWasLeftAfterARestart)
{
    const auto footage = filesIn(shoot);
    openSortTool();

    Desktop::key(u"ctrl+comma"_s);
    Desktop::click(shown(u"Import"_s));
    chooseInPreferences(u"File handling"_s, u"Copy into folders"_s);
    Desktop::click(control(u"Open the editor after export"_s)); // there is none on this display
    ASSERT_TRUE(waitUntil([&] { return !engine().options().openEditorAfterExport; }));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));

    Desktop::dragFiles({shoot}, shown(u"Drop a shoot folder here"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    ASSERT_EQ(engine().reviewCount(), 3);

    // One by mouse, one left as it is and one moved by keyboard.
    Desktop::click(shown(u"Needs a look"_s));
    (void)shown(u"3 clips Binnacle wasn't sure about"_s);
    Desktop::click(control(u"Bin of clip 2.mp4"_s));
    Desktop::click(shown(u"Kitchen"_s));
    ASSERT_TRUE(leavesReview(2));
    (void)shown(u"2 clips Binnacle wasn't sure about"_s);
    Desktop::key(u"c"_s);
    ASSERT_TRUE(leavesReview(1));
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    Desktop::key(u"m"_s);
    (void)shown(u"Pool"_s);
    typeBin(u"poo"_s);
    ASSERT_TRUE(leavesReview(0));
    ASSERT_TRUE(goes(u"Needs a look"_s));

    // And a second bin in the preview.
    Desktop::click(shown(u"Pool"_s));
    Desktop::click(shown(u"clip 11"_s));
    Desktop::click(control(u"Second bin"_s));
    Desktop::click(shown(u"Garage"_s));
    Desktop::click(shown(u"Done"_s));
    ASSERT_TRUE(goes(u"Done"_s));

    Desktop::click(shown(u"Export"_s));
    ASSERT_TRUE(reaches(StageKind::done));
    (void)shown(u"Copied 4 clips into 5 folders. Your originals are untouched."_s);

    const std::vector<Clip> settled{
        {.file = "clip 2.mp4", .bins = {u"Kitchen"_s}},
        {.file = "clip 10.mov", .bins = {u"Unsorted"_s}},
        {.file = "clip 11.mp4", .bins = {u"Pool"_s, u"Garage"_s}},
        {.file = "DJI_0001.MP4", .bins = {u"Aerial / Drone"_s}},
    };
    EXPECT_EQ(clips(), settled);
    auto expected = footage;
    expected["Kitchen/clip 2.mp4"] = footage.at("clip 2.mp4");
    expected["Unsorted/clip 10.mov"] = footage.at("clip 10.mov");
    expected["Pool/clip 11.mp4"] = footage.at("clip 11.mp4");
    expected["Aerial - Drone/DJI_0001.MP4"] = footage.at("DJI_0001.MP4");
    const fs::path event = shoot / "Villa & Söhne.fcpxml";
    expected["Villa & Söhne.fcpxml"] = bytesOf(event);
    const auto left = filesIn(shoot);
    EXPECT_EQ(left, expected);
    EXPECT_THAT(inXml(event, "//event/asset-clip/@name"),
                UnorderedElementsAre("clip 2", "clip 10", "clip 11", "DJI_0001"));
    const auto address = [this](const char *copy) { return FileUrl(shoot / copy).absoluteString().toStdString(); };
    EXPECT_THAT(inXml(event, "//media-rep/@src"),
                UnorderedElementsAre(address("Kitchen/clip 2.mp4"), address("Unsorted/clip 10.mov"),
                                     address("Pool/clip 11.mp4"), address("Aerial - Drone/DJI_0001.MP4")));
    EXPECT_THAT(inXml(event, "//asset-clip[@name='clip 11']/keyword/@value"), UnorderedElementsAre("Pool", "Garage"));

    program.reset();
    openSortTool();
    EXPECT_EQ(engine().options().fileHandling, FileHandling::copy);
    EXPECT_FALSE(engine().options().openEditorAfterExport);
    Desktop::click(shown(u"Projects"_s));
    (void)shown(u"4 clips · 5 bins"_s);
    Desktop::click(shown(u"Villa & Söhne"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    EXPECT_EQ(clips(), settled);
    EXPECT_FALSE(isShown(u"Needs a look"_s));
    Desktop::click(shown(u"Garage"_s));
    (void)shown(u"clip 11"_s);
    EXPECT_EQ(filesIn(shoot), left);
}
