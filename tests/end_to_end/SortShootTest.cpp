#include <cstdlib>

#include "tests/end_to_end/ProgramWindow.h"
#include "tests/end_to_end/XmlTexts.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

// The whole program, used by mouse and keyboard alone.
class SortShootTest : public ProgramWindow
{
protected:
    // Instead of the program that this machine has for events, a note of what it was to open. Qt looks for it once.
    static void SetUpTestSuite()
    {
        const fs::path opener = desk().write("xdg-open", "#!/bin/sh\nprintf %s \"$1\" >\"${0%/*}/opened\"\n");
        fs::permissions(opener, fs::perms::owner_all);
        qputenv("PATH", QByteArray::fromStdString(desk().path().string()) + ':' + qgetenv("PATH"));
    }

    static const TempFolder &desk()
    {
        static const TempFolder folder;
        return folder;
    }

    SortShootTest()
    {
        fs::remove(desk() / "opened");
        fs::create_directory(shoot);
        for (const char *clip : {"clip 2.mp4", "clip 10.mov", "DJI_0001.MP4"}) {
            makeMedia(shoot / clip,
                      "-f lavfi -i testsrc2=s=320x180:r=25:d=2 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
        }
    }

    void SetUp() override { startSorting(); }

    void expectTheEvent() const
    {
        EXPECT_THAT(inXml(event, "/fcpxml/@version"), ElementsAre("1.10"));
        EXPECT_THAT(inXml(event, "//event/@name"), ElementsAre("Villa & Söhne"));
        EXPECT_THAT(inXml(event, "//event/asset-clip/@name"), UnorderedElementsAre("clip 2", "clip 10", "DJI_0001"));
        EXPECT_THAT(inXml(event, "//asset//@src"),
                    UnorderedElementsAre(FileUrl(shoot / "clip 2.mp4").absoluteString().toStdString(),
                                         FileUrl(shoot / "clip 10.mov").absoluteString().toStdString(),
                                         FileUrl(shoot / "DJI_0001.MP4").absoluteString().toStdString()));
        EXPECT_THAT(inXml(event, "//asset-clip[@name='DJI_0001']/keyword/@value"), ElementsAre("Aerial / Drone"));
    }

    const TempFolder scratch;
    const fs::path shoot = scratch / "Villa & Söhne";
    const fs::path event = shoot / "Villa & Söhne.fcpxml";
};

} // namespace

TEST_F(SortShootTest, DropAFolderWaitForTheBinsExportAndFindTheEventByMouse)
{
    Desktop::dragFiles({shoot}, shown(u"Drop a shoot folder here"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    Desktop::click(shown(u"Aerial / Drone"_s));
    EXPECT_TRUE(waitUntil([&] { return engine().selectedBin() == u"Aerial / Drone"_s; }));
    (void)shown(u"DJI_0001"_s);
    Desktop::click(shown(u"Export"_s));
    ASSERT_TRUE(reaches(StageKind::done));
    (void)shown(FileUrl(event).displayPath());
    expectTheEvent();

    const fs::path opened = desk() / "opened";
    EXPECT_TRUE(waitUntil([&] { return fs::exists(opened) && !bytesOf(opened).empty(); }));
    EXPECT_EQ(QUrl::fromEncoded(QByteArray::fromStdString(bytesOf(opened))).toLocalFile(),
              QString::fromStdString(event.string()));
    Desktop::click(shown(u"Sort Another Shoot"_s));
    (void)shown(u"Drop a shoot folder here"_s);
}

TEST_F(SortShootTest, AVerifiedCopyLeavesItsProofAndAReportThatCallsItSafe)
{
    engine().setOptions({.openEditorAfterExport = false, .fileHandling = FileHandling::copy});
    engine().sortFolder(FileUrl(shoot));
    ASSERT_TRUE(reaches(StageKind::results));
    Desktop::key(u"F10"_s);
    Desktop::click(shown(u"Verify Copies Byte for Byte"_s));
    ASSERT_TRUE(waitUntil([this] { return engine().options().verifyLevel == VerifyLevel::checksum; }));
    ASSERT_TRUE(goes(u"Preferences…"_s));
    engine().exportEvent();
    ASSERT_TRUE(reaches(StageKind::done));
    EXPECT_EQ(std::system(("cd '" + shoot.string() + "' && sha256sum --check --strict --quiet SHA256SUMS").c_str()), 0);

    Desktop::click(shown(u"Copy Report…"_s));
    const fs::path report = shoot / "Villa & Söhne copy report.html";
    ASSERT_TRUE(waitUntil([&] { return fs::exists(desk() / "opened") && !bytesOf(desk() / "opened").empty(); }));
    EXPECT_EQ(QUrl::fromEncoded(QByteArray::fromStdString(bytesOf(desk() / "opened"))).toLocalFile(),
              QString::fromStdString(report.string()));
    EXPECT_THAT(bytesOf(report), testing::HasSubstr("All 3 files were read back and match. Safe to erase."));
}

TEST_F(SortShootTest, ADroppedClipSortsTheFolderThatItLiesIn)
{
    Desktop::dragFiles({shoot / "clip 2.mp4"}, shown(u"Drop a shoot folder here"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    EXPECT_EQ(engine().folder(), FileUrl(shoot));
    EXPECT_THAT(engine().clips(), SizeIs(3));
}

TEST_F(SortShootTest, TheKeyboardAloneReachesTheBinsTheClipsAndExport)
{
    engine().sortFolder(FileUrl(shoot));
    ASSERT_TRUE(reaches(StageKind::results));
    (void)shown(u"Export"_s);
    const auto selected = engine().selectedBin();
    Desktop::key(u"Down"_s);
    EXPECT_TRUE(waitUntil([&] { return engine().selectedBin() != selected; }));
    for (int i = 0; i < 5; ++i) { // to the clips, the model and its note, "Sort Again", "Export"
        Desktop::key(u"Tab"_s);
    }
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(reaches(StageKind::done));
    expectTheEvent();
}

TEST_F(SortShootTest, ReturnOpensTheFolderPanelAndEscapeLeavesTheLandingWithItsKeyboard)
{
    (void)shown(u"Choose Folder"_s);
    Desktop::key(u"Return"_s);
    (void)shown(u"Choose the folder holding this shoot's raw clips."_s);
    (void)shown(u"Sort This Folder"_s);
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(goes(u"Sort This Folder"_s));
    EXPECT_EQ(engine().stage().kind, StageKind::empty);
    EXPECT_TRUE(hasKeyboard(u"Choose Folder"_s));
}
