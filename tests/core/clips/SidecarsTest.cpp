// The files that belong to a clip, told by their names.
#include <gmock/gmock.h>

#include "core/clips/Sidecars.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

class SidecarsTest : public testing::Test
{
protected:
    void write(std::initializer_list<const char *> names) const
    {
        for (const char *const name : names) {
            (void)folder.write(name, "x");
        }
    }

    // By their places in the folder.
    std::vector<std::string> sidecarsOf(const fs::path &clip) const
    {
        std::vector<std::string> names;
        for (const Sidecar &sidecar : Sidecars().of(FileUrl(folder / clip))) {
            names.push_back(sidecar.url.path().lexically_relative(folder.path()).native());
        }
        return names;
    }

    // The names of all of them beside a copy of the clip that goes by another name.
    std::vector<std::string> namesBeside(const fs::path &clip, const std::string &copy) const
    {
        std::vector<std::string> names;
        for (const Sidecar &sidecar : Sidecars().of(FileUrl(folder / clip))) {
            names.push_back(sidecar.nameBeside(copy));
        }
        return names;
    }

    const TempFolder folder;
};

} // namespace

TEST_F(SidecarsTest, FilesOfTheClipsStemBelongToItWhateverTheCaseOfTheirExtension)
{
    write({"A.MP4", "A.XML", "A.Thm", "A.srt", "A.LRV", "A.lrf", "A.WAV", "A.sidecar"});
    EXPECT_THAT(sidecarsOf("A.MP4"), ElementsAre("A.LRV", "A.Thm", "A.WAV", "A.XML", "A.lrf", "A.sidecar", "A.srt"));
}

TEST_F(SidecarsTest, OtherStemsOtherExtensionsFoldersAndHiddenFilesDoNot)
{
    write({"A.MP4", "AB.XML", "A.TXT", "A", "A.B.XML", "a.XML", "._A.XML", ".A.XML", "XML", "A.SRT/inside.txt"});
    EXPECT_THAT(sidecarsOf("A.MP4"), IsEmpty());
}

TEST_F(SidecarsTest, AVideoFileIsAClipOfItsOwn)
{
    write({"A.MP4", "A.MOV", "C0001.MP4", "C0001M01.MP4", "A.mxf"});
    EXPECT_THAT(sidecarsOf("A.MP4"), IsEmpty());
    EXPECT_THAT(sidecarsOf("C0001.MP4"), IsEmpty());
}

TEST_F(SidecarsTest, ASidecarHasOneClipAlsoWhereTwoHaveItsStem)
{
    write({"A.MP4", "A.MOV", "A.XML"});
    EXPECT_THAT(sidecarsOf("A.MOV"), ElementsAre("A.XML"));
    EXPECT_THAT(sidecarsOf("A.MP4"), IsEmpty());
}

TEST_F(SidecarsTest, AClipOfItsVeryStemComesBeforeOneThatACameraWouldHaveNumbered)
{
    write({"C0001.MP4", "C0001M01.MP4", "C0001M01.XML", "C0001M02.XML"});
    EXPECT_THAT(sidecarsOf("C0001M01.MP4"), ElementsAre("C0001M01.XML"));
    EXPECT_THAT(sidecarsOf("C0001.MP4"), ElementsAre("C0001M02.XML"));
}

TEST_F(SidecarsTest, SonysFilesCarryALetterAndANumberBehindTheStem)
{
    write({"C0001.MP4", "C0001M01.XML", "C0001M02.KLV", "C0001R01.BIM", "C0001S01.SMI", "C0001I01.PPN", //
           "C0001X01.XML", "C0001M1.XML", "C0001M001.XML", "C0001M01.BIM", "M01.XML"});
    EXPECT_THAT(sidecarsOf("C0001.MP4"),
                ElementsAre("C0001I01.PPN", "C0001M01.XML", "C0001M02.KLV", "C0001R01.BIM", "C0001S01.SMI"));
}

TEST_F(SidecarsTest, ThatNumberHasTwoDigits)
{
    write({"C0001.MP4", "C0001M0A.XML", "C0001MA1.XML", "C0001MAB.XML"});
    EXPECT_THAT(sidecarsOf("C0001.MP4"), IsEmpty());
}

TEST_F(SidecarsTest, SonysThumbnailsAreInTheFolderBesideTheClips)
{
    write({"PRIVATE/M4ROOT/CLIP/C0001.MP4", "PRIVATE/M4ROOT/CLIP/C0001M01.XML", "PRIVATE/M4ROOT/THMBNL/C0001T01.JPG",
           "PRIVATE/M4ROOT/THMBNL/C0002T01.JPG", "PRIVATE/M4ROOT/MEDIAPRO.XML"});
    EXPECT_THAT(sidecarsOf("PRIVATE/M4ROOT/CLIP/C0001.MP4"),
                ElementsAre("PRIVATE/M4ROOT/CLIP/C0001M01.XML", "PRIVATE/M4ROOT/THMBNL/C0001T01.JPG"));
    write({"XDROOT/Clip/918_0990.MXF", "XDROOT/Clip/918_0990M01.XML", "XDROOT/Thmbnl/918_0990T01.JPG",
           "XDROOT/Sub/918_0990S03.MP4", "XDROOT/MEDIAPRO.XML"});
    EXPECT_THAT(sidecarsOf("XDROOT/Clip/918_0990.MXF"),
                ElementsAre("XDROOT/Clip/918_0990M01.XML", "XDROOT/Thmbnl/918_0990T01.JPG"));
}

TEST_F(SidecarsTest, ThumbnailsThatAnImportBroughtBesideTheirClipsBelongToThemThere)
{
    write({"C0001.MP4", "C0001T01.JPG", "0001AB.MXF", "0001AB.BMP", "0001AB.XML"});
    EXPECT_THAT(sidecarsOf("C0001.MP4"), ElementsAre("C0001T01.JPG"));
    EXPECT_THAT(sidecarsOf("0001AB.MXF"), ElementsAre("0001AB.BMP", "0001AB.XML"));
}

TEST_F(SidecarsTest, AnEditorsPictureWithTheNameOfAClipIsNone)
{
    write({"C0001.MP4", "C0001.JPG", "C0001T1.JPG", "C0001.BMP", "C0001T01.BMP", "0001AB.MXF", "0001AB.JPG"});
    EXPECT_THAT(sidecarsOf("C0001.MP4"), IsEmpty());
    EXPECT_THAT(sidecarsOf("0001AB.MXF"), IsEmpty());
}

TEST_F(SidecarsTest, AFolderOfThatNameElsewhereIsNoCameras)
{
    write({"CLIP/C0001.MP4", "THMBNL/C0001T01.JPG", "VIDEO/0001AB.MXF", "ICON/0001AB.BMP"});
    EXPECT_THAT(sidecarsOf("CLIP/C0001.MP4"), IsEmpty());
    EXPECT_THAT(sidecarsOf("VIDEO/0001AB.MXF"), IsEmpty());
}

TEST_F(SidecarsTest, AP2CardHasMetadataAndThumbnailsInFoldersOfTheirOwn)
{
    write({"CONTENTS/VIDEO/0001AB.MXF", "CONTENTS/AUDIO/0001AB00.MXF", "CONTENTS/CLIP/0001AB.XML",
           "CONTENTS/ICON/0001AB.BMP", "CONTENTS/CLIP/0002AB.XML"});
    EXPECT_THAT(sidecarsOf("CONTENTS/VIDEO/0001AB.MXF"),
                ElementsAre("CONTENTS/CLIP/0001AB.XML", "CONTENTS/ICON/0001AB.BMP"));
    EXPECT_THAT(sidecarsOf("CONTENTS/AUDIO/0001AB00.MXF"), IsEmpty());
}

TEST_F(SidecarsTest, AnAvchdCardHasTheInformationOnAClipUnderItsNumberInAFolderOfItsOwn)
{
    write({"PRIVATE/AVCHD/BDMV/STREAM/00000.MTS", "PRIVATE/AVCHD/BDMV/STREAM/00001.MTS",
           "PRIVATE/AVCHD/BDMV/CLIPINF/00000.CPI", "PRIVATE/AVCHD/BDMV/CLIPINF/00001.CPI",
           "PRIVATE/AVCHD/BDMV/PLAYLIST/00000.MPL", "PRIVATE/AVCHD/BDMV/INDEX.BDM"});
    EXPECT_THAT(sidecarsOf("PRIVATE/AVCHD/BDMV/STREAM/00001.MTS"), ElementsAre("PRIVATE/AVCHD/BDMV/CLIPINF/00001.CPI"));
}

TEST_F(SidecarsTest, AGoProsProxyHasOtherFirstLettersThanItsClip)
{
    write({"GX010001.MP4", "GL010001.LRV", "GX010001.THM", "GH010002.MP4", "GL010002.LRV", "GL010003.LRV",
           "GOPR0004.MP4", "GOPR0004.LRV"});
    EXPECT_THAT(sidecarsOf("GX010001.MP4"), ElementsAre("GL010001.LRV", "GX010001.THM"));
    EXPECT_THAT(sidecarsOf("GH010002.MP4"), ElementsAre("GL010002.LRV"));
    EXPECT_THAT(sidecarsOf("GOPR0004.MP4"), ElementsAre("GOPR0004.LRV"));
}

TEST_F(SidecarsTest, AnotherCamerasProxyAndAnotherKindOfFileAreNoGoProsProxy)
{
    write({"GX010001.MP4", "AB010001.LRV", "GL010001.TXT"});
    EXPECT_THAT(sidecarsOf("GX010001.MP4"), IsEmpty());
}

TEST_F(SidecarsTest, OfARenamedClipTheyTakeItsNewName)
{
    write({"C0001.MP4", "C0001.THM", "C0001M01.XML", "GX010001.MP4", "GL010001.LRV"});
    EXPECT_THAT(namesBeside("C0001.MP4", "C0001.MP4"), ElementsAre("C0001.THM", "C0001M01.XML"));
    EXPECT_THAT(namesBeside("C0001.MP4", "C0001 2.MP4"), ElementsAre("C0001 2.THM", "C0001 2M01.XML"));
    EXPECT_THAT(namesBeside("GX010001.MP4", "GX010001 2.MP4"), ElementsAre("GL010001 2.LRV"));
    EXPECT_THAT(namesBeside("GX010001.MP4", "G.MP4"), ElementsAre("GL.LRV"))
        << "shorter than the letters it differs in";
}

TEST_F(SidecarsTest, UnderTheNewNameTheyAreFoundAgain)
{
    write({"C0001 2.MP4", "C0001 2.THM", "C0001 2M01.XML", "GX010001 2.MP4", "GL010001 2.LRV", "C0001.THM", //
           "00000 2.MTS", "00000 2.CPI", "C0001 2T01.JPG", "0001AB 2.MXF", "0001AB 2.BMP"});
    EXPECT_THAT(sidecarsOf("C0001 2.MP4"), ElementsAre("C0001 2.THM", "C0001 2M01.XML", "C0001 2T01.JPG"));
    EXPECT_THAT(sidecarsOf("0001AB 2.MXF"), ElementsAre("0001AB 2.BMP"));
    EXPECT_THAT(sidecarsOf("GX010001 2.MP4"), ElementsAre("GL010001 2.LRV"));
    EXPECT_THAT(sidecarsOf("00000 2.MTS"), ElementsAre("00000 2.CPI"));
}

TEST_F(SidecarsTest, ALinkToAFileIsOneAndABrokenLinkIsNone)
{
    write({"A.MP4", "elsewhere/A.XML"});
    fs::create_symlink(folder / "elsewhere/A.XML", folder / "A.XML");
    fs::create_symlink(folder / "gone", folder / "A.THM");
    EXPECT_THAT(sidecarsOf("A.MP4"), ElementsAre("A.XML"));
}

TEST_F(SidecarsTest, NamesOfAnyBytesBelongTogetherAllTheSame)
{
    write({"K\xFC"
           "che.MP4",
           "K\xFC"
           "che.XML"});
    EXPECT_THAT(sidecarsOf("K\xFC"
                           "che.MP4"),
                ElementsAre("K\xFC"
                            "che.XML"));
}

TEST_F(SidecarsTest, AClipOfTheWorkingFolderAndOneWithoutAFolderHaveTheirs)
{
    write({"A.MP4", "A.XML"});
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const auto found = Sidecars().of(FileUrl("A.MP4"));
    fs::current_path(before);
    EXPECT_THAT(found, ElementsAre(Sidecar{FileUrl("A.XML"), "", ".XML"}));
    EXPECT_THAT(sidecarsOf("gone/A.MP4"), IsEmpty());
}

TEST_F(SidecarsTest, AFolderIsReadOnce)
{
    write({"A.MP4", "B.MP4", "A.XML"});
    Sidecars sidecars;
    EXPECT_THAT(sidecars.of(FileUrl(folder / "B.MP4")), IsEmpty());
    write({"A.THM"});
    EXPECT_THAT(sidecars.of(FileUrl(folder / "A.MP4")), ElementsAre(Sidecar{FileUrl(folder / "A.XML"), "", ".XML"}));
}

TEST_F(SidecarsTest, EveryClipOfAListComesWithItsOwnInTheOrderOfTheList)
{
    write({"b/B.MP4", "a/A.MP4", "a/A.XML", "b/C.MP4", "b/C.THM"});
    const FileUrl a(folder / "a/A.MP4");
    const FileUrl b(folder / "b/B.MP4");
    const FileUrl c(folder / "b/C.MP4");
    EXPECT_THAT(withSidecars(std::vector{c, a, b}),
                ElementsAre(ClipFiles{c, {{FileUrl(folder / "b/C.THM"), "", ".THM"}}},
                            ClipFiles{a, {{FileUrl(folder / "a/A.XML"), "", ".XML"}}}, ClipFiles{b, {}}));
}
