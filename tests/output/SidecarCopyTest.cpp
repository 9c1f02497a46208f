// Sidecars go where their clips go, under the same rules.
#include <fcntl.h>
#include <gmock/gmock.h>

#include "output/CopyReport.h"
#include "output/ProofFile.h"
#include "tests/output/Footage.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

namespace {

using Progress = std::vector<std::pair<int, int>>;

// A card with two clips of one name and a third, each with what its camera wrote beside it.
class SidecarCopyTest : public testing::Test
{
protected:
    SidecarCopyTest()
    {
        for (const char *const name :
             {"card/100/C0001.MP4", "card/100/C0001M01.XML", "card/100/C0001.THM", "card/101/C0001.MP4",
              "card/101/C0001M01.XML", "card/101/GX010002.MP4", "card/101/GL010002.LRV", "card/101/notes.xml"}) {
            (void)folder.write(name, name);
        }
    }

    FileUrl clip(const char *name) const { return FileUrl(folder / "card" / name); }

    std::vector<FileUrl> urls() const
    {
        return {clip("100/C0001.MP4"), clip("101/C0001.MP4"), clip("101/GX010002.MP4")};
    }

    std::vector<ClipToOrganize> clips() const
    {
        return {clipIn(urls()[0].path(), u"Kitchen"_s), clipIn(urls()[1].path(), u"Kitchen"_s),
                clipIn(urls()[2].path(), u"Pool"_s)};
    }

    const std::map<std::string, std::string> copies{
        {"C0001 2.MP4", "card/101/C0001.MP4"},     {"C0001 2M01.XML", "card/101/C0001M01.XML"},
        {"C0001.MP4", "card/100/C0001.MP4"},       {"C0001.THM", "card/100/C0001.THM"},
        {"C0001M01.XML", "card/100/C0001M01.XML"}, {"GL010002.LRV", "card/101/GL010002.LRV"},
        {"GX010002.MP4", "card/101/GX010002.MP4"}};
    const TempFolder folder;
    const fs::path shoot = folder / "shoot";
    const fs::path root = folder / "root";
};

// Fails to read the files whose path ends like this.
class UnreadableFiles : public FileOperations
{
public:
    explicit UnreadableFiles(std::string ending) : m_ending(std::move(ending)) {}

    int open(int from, const char *path, int flags, mode_t mode) const override
    {
        if (std::string_view(path).ends_with(m_ending)) {
            errno = EIO;
            return -1;
        }
        return FileOperations::open(from, path, flags, mode);
    }

private:
    std::string m_ending;
};

} // namespace

TEST_F(SidecarCopyTest, ACardsClipsBringTheirsAlongUnderTheirNewNames)
{
    Progress progress;
    const auto answer = MediaImporter::copyFiles(
        urls(), FileUrl(shoot),
        {VerifyLevel::checksum, [&](int done, int total) { progress.emplace_back(done, total); }});
    EXPECT_EQ(answer, (std::vector<CopyResult>{{urls()[0], FileUrl(shoot / "C0001.MP4")},
                                               {urls()[1], FileUrl(shoot / "C0001 2.MP4")},
                                               {urls()[2], FileUrl(shoot / "GX010002.MP4")}}))
        << "results are of clips";
    EXPECT_EQ(filesBeneath(shoot), copies);
    EXPECT_EQ(progress, (Progress{{1, 3}, {2, 3}, {3, 3}})) << "and so is progress";
    EXPECT_THAT(namesBeneath(folder / "card"), testing::SizeIs(8));
}

TEST_F(SidecarCopyTest, TheyAreCountedInTheProofAndInTheReport)
{
    CopyRecord record;
    ASSERT_TRUE(MediaImporter::copyFiles(
        urls(), FileUrl(shoot),
        {VerifyLevel::checksum, [](int, int) {}, {}, {.ended = [&](CopyRecord ended) { record = std::move(ended); }}}));
    EXPECT_EQ(countOf(record, CopyState::readBack), 7);
    const std::string proof = bytesOf(shoot / proofFileName);
    EXPECT_EQ(std::ranges::count(proof, '\n'), 7);
    const std::string report = copyReport({record}, u"card"_s).toStdString();
    EXPECT_THAT(report, HasSubstr("All 7 files were read back and match. Safe to erase."));
    for (const auto &[name, content] : copies) {
        EXPECT_THAT(proof, HasSubstr("  " + name + "\n"));
        EXPECT_THAT(report, HasSubstr(name));
    }
}

TEST_F(SidecarCopyTest, AMoveTakesThemIntoTheFolderOfTheirClipsBin)
{
    const auto list = clips();
    EXPECT_EQ(moveByBin(list, root), (std::map<QUuid, FileUrl>{{list[0].id, FileUrl(root / "Kitchen/C0001.MP4")},
                                                               {list[1].id, FileUrl(root / "Kitchen/C0001 2.MP4")},
                                                               {list[2].id, FileUrl(root / "Pool/GX010002.MP4")}}));
    std::map<std::string, std::string> expected;
    for (const auto &[name, content] : copies) {
        expected[(name.starts_with("G") ? "Pool/" : "Kitchen/") + name] = content;
    }
    EXPECT_EQ(filesBeneath(root), expected);
    EXPECT_THAT(namesBeneath(folder / "card"), ElementsAre("101/notes.xml"));
}

TEST_F(SidecarCopyTest, ACopyLeavesThemWhereTheyAre)
{
    ASSERT_TRUE(copyByBin(clips(), root, VerifyLevel::sizeOnly));
    EXPECT_THAT(namesBeneath(root), testing::SizeIs(7));
    EXPECT_THAT(namesBeneath(folder / "card"), testing::SizeIs(8));
}

TEST_F(SidecarCopyTest, OneThatFailsEndsTheCopyOfACardAsItsClipWould)
{
    const UnreadableFiles files("101/C0001M01.XML");
    EXPECT_EQ(copyFiles(urls(), shoot, VerifyLevel::checksum, files),
              tl::unexpected(ImportError{SystemFailure{clip("101/C0001M01.XML"), {EIO, std::generic_category()}}}));
    EXPECT_THAT(namesBeneath(shoot), ElementsAre("C0001 2.MP4", "C0001.MP4", "C0001.THM", "C0001M01.XML"));
}

TEST_F(SidecarCopyTest, OneThatFailsInAMoveLeavesEverySourceInPlace)
{
    const auto before = filesBeneath(folder / "card");
    EXPECT_EQ(moveByBin(clips(), root, VerifyLevel::checksum, UnreadableFiles("100/C0001.THM")),
              tl::unexpected(ImportError{VerificationFailed{{clip("100/C0001.THM")}}}));
    EXPECT_EQ(filesBeneath(folder / "card"), before);
}

TEST_F(SidecarCopyTest, OfAClipThatFailsNoneIsCopiedAndTheClipIsNamed)
{
    EXPECT_EQ(copyByBin(clips(), root, VerifyLevel::checksum, UnreadableFiles("100/C0001.MP4")),
              tl::unexpected(ImportError{VerificationFailed{{clip("100/C0001.MP4")}}}));
    EXPECT_THAT(namesBeneath(root),
                ElementsAre("Kitchen/C0001.MP4", "Kitchen/C0001M01.XML", "Pool/GL010002.LRV", "Pool/GX010002.MP4"));
}

TEST_F(SidecarCopyTest, OneThatChangedSinceItsCopyStays)
{
    // Written to when the last file of the run has its name.
    class ChangingLater : public FileOperations
    {
    public:
        explicit ChangingLater(fs::path file) : m_file(std::move(file)) {}
        int renameWithoutClobbering(int folder, const char *from, const char *to) const override
        {
            if (std::string_view(to) == "GL010002.LRV") {
                writeContent(m_file, "changed since");
            }
            return FileOperations::renameWithoutClobbering(folder, from, to);
        }

    private:
        fs::path m_file;
    };
    ASSERT_TRUE(moveByBin(clips(), root, VerifyLevel::checksum, ChangingLater(folder / "card/100/C0001.THM")));
    EXPECT_THAT(filesBeneath(folder / "card"),
                ElementsAre(Pair("100/C0001.THM", "changed since"), Pair("101/notes.xml", "card/101/notes.xml")));
    EXPECT_EQ(bytesOf(root / "Kitchen/C0001.THM"), "card/100/C0001.THM");
}

TEST_F(SidecarCopyTest, TheyCountAsNeededSpace)
{
    class TinyVolume : public FileOperations
    {
    public:
        int statvfs(const char *path, struct statvfs *volume) const override
        {
            const int result = FileOperations::statvfs(path, volume);
            volume->f_frsize = 1;
            volume->f_bavail = 200;
            return result;
        }
    };
    fs::resize_file(folder / "card/100/C0001.THM", 500);
    const auto needed = [](const auto &answer) {
        return answer ? -1 : std::get<InsufficientSpace>(answer.error().reason).needed;
    };
    std::int64_t all = 0;
    for (const auto &[name, content] : filesBeneath(folder / "card")) {
        all += name == "101/notes.xml" ? 0 : static_cast<std::int64_t>(content.size());
    }
    EXPECT_EQ(needed(copyFiles(urls(), shoot, VerifyLevel::sizeOnly, TinyVolume())), all);
    fs::create_directories(root);
    EXPECT_EQ(needed(copyByBin(clips(), root, VerifyLevel::sizeOnly, TinyVolume())), all);
}

TEST_F(SidecarCopyTest, AStopLetsAClipHaveAllOfIts)
{
    // Asked for while the first clip, which has two, is on its way.
    class StoppingRename : public FileOperations
    {
    public:
        int renameWithoutClobbering(int folder, const char *from, const char *to) const override
        {
            stop.request_stop();
            return FileOperations::renameWithoutClobbering(folder, from, to);
        }
        mutable std::stop_source stop;
    };
    const StoppingRename files;
    const auto answer = MediaImporter::copyFiles(
        urls(), FileUrl(shoot), {VerifyLevel::checksum, [](int, int) {}, files.stop.get_token()}, files);
    EXPECT_EQ(answer, (std::vector<CopyResult>{{urls()[0], FileUrl(shoot / "C0001.MP4")}}));
    EXPECT_THAT(namesBeneath(shoot), ElementsAre("C0001.MP4", "C0001.THM", "C0001M01.XML"));

    const StoppingRename again;
    const auto list = clips();
    const auto moved = MediaImporter::organizeByBin(
        list, FileUrl(root), true, {VerifyLevel::checksum, [](int, int) {}, again.stop.get_token()}, again);
    EXPECT_EQ(moved, (std::map<QUuid, FileUrl>{{list[0].id, FileUrl(root / "Kitchen/C0001.MP4")}}));
    EXPECT_THAT(namesBeneath(root), ElementsAre("Kitchen/C0001.MP4", "Kitchen/C0001.THM", "Kitchen/C0001M01.XML"));
    EXPECT_THAT(namesBeneath(folder / "card"), ElementsAre("101/C0001.MP4", "101/C0001M01.XML", "101/GL010002.LRV",
                                                           "101/GX010002.MP4", "101/notes.xml"));
}

TEST_F(SidecarCopyTest, NothingStandsInTheirWay)
{
    (void)folder.write("shoot/C0001M01.XML", "somebody's");
    ASSERT_TRUE(copyFiles({urls()[0]}, shoot));
    EXPECT_THAT(filesBeneath(shoot),
                ElementsAre(Pair("C0001.MP4", "card/100/C0001.MP4"), Pair("C0001.THM", "card/100/C0001.THM"),
                            Pair("C0001M01 2.XML", "card/100/C0001M01.XML"), Pair("C0001M01.XML", "somebody's")));
}

TEST_F(SidecarCopyTest, AMoveRefusesOneThatIsALinkOutOfTheShoot)
{
    fs::create_symlink(folder.write("elsewhere/C.SRT", "x"), folder / "card/100/C0001.SRT");
    EXPECT_EQ(moveByBin(clips(), root), tl::unexpected(ImportError{LinkedSources{{clip("100/C0001.SRT")}}}));
    ASSERT_TRUE(copyByBin(clips(), root));
    EXPECT_EQ(bytesOf(root / "Kitchen/C0001.SRT"), "x");
}

TEST_F(SidecarCopyTest, ThumbnailsFromASonysOtherFolderAreNoLinksAndMoveWithTheirClip)
{
    const fs::path clip = folder.write("sd/M4ROOT/CLIP/C0001.MP4", "clip");
    (void)folder.write("sd/M4ROOT/THMBNL/C0001T01.JPG", "thumbnail");
    ASSERT_TRUE(moveByBin({clipIn(clip, u"Pool"_s)}, root));
    EXPECT_THAT(filesBeneath(root),
                ElementsAre(Pair("Pool/C0001.MP4", "clip"), Pair("Pool/C0001T01.JPG", "thumbnail")));
    EXPECT_THAT(namesBeneath(folder / "sd"), IsEmpty());
}

TEST_F(SidecarCopyTest, WhatACardHeldInOtherFoldersGoesOnFromTheImportToTheExport)
{
    const std::vector urls{FileUrl(folder.write("sd/M4ROOT/CLIP/C0001.MP4", "clip")),
                           FileUrl(folder.write("xd/XDROOT/Clip/918_0990.MXF", "clip of an XD card")),
                           FileUrl(folder.write("p2/CONTENTS/VIDEO/0001AB.MXF", "clip of a P2 card"))};
    for (const char *const name : {"sd/M4ROOT/THMBNL/C0001T01.JPG", "xd/XDROOT/Thmbnl/918_0990T01.JPG",
                                   "p2/CONTENTS/CLIP/0001AB.XML", "p2/CONTENTS/ICON/0001AB.BMP"}) {
        (void)folder.write(name, name);
    }
    ASSERT_TRUE(copyFiles(urls, shoot));
    std::vector<ClipToOrganize> imported;
    for (const FileUrl &url : urls) {
        imported.push_back(clipIn(shoot / url.lastPathBytes(), u"Pool"_s));
    }
    ASSERT_TRUE(moveByBin(imported, root));
    EXPECT_THAT(namesBeneath(root),
                ElementsAre("Pool/0001AB.BMP", "Pool/0001AB.MXF", "Pool/0001AB.XML", "Pool/918_0990.MXF",
                            "Pool/918_0990T01.JPG", "Pool/C0001.MP4", "Pool/C0001T01.JPG"));
    EXPECT_THAT(namesBeneath(shoot), IsEmpty());
}
