#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include "output/FileNames.h"
#include "output/ImportError.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

namespace {

QString failureOf(std::initializer_list<const char *> names)
{
    std::vector<FileUrl> urls;
    for (const char *const name : names) {
        urls.emplace_back(std::filesystem::path("/card/DCIM") / name);
    }
    return ImportError{VerificationFailed{urls}}.description();
}

bool isUtf8(const std::string &text)
{
    return QString::fromStdString(text).toStdString() == text;
}

} // namespace

TEST(ImportError, TooLittleSpaceNamesBothCounts)
{
    EXPECT_EQ((ImportError{InsufficientSpace{34'560'000'000, 1'200'000}}.description()),
              u"Not enough space at the destination — needs 34.56 GB, 1.2 MB available."_s);
    EXPECT_EQ((ImportError{InsufficientSpace{0, 0}}.description()),
              u"Not enough space at the destination — needs Zero KB, Zero KB available."_s);
}

TEST(ImportError, FourFailedFilesNameThreeAndGoOnWithDots)
{
    EXPECT_EQ(failureOf({"a.mov", "b.mov", "c.mov", "d.mov"}),
              u"4 files didn't copy cleanly (a.mov, b.mov, c.mov, …) — nothing was deleted from the source."_s);
    EXPECT_EQ(failureOf({"a.mov", "b.mov", "c.mov"}),
              u"3 files didn't copy cleanly (a.mov, b.mov, c.mov) — nothing was deleted from the source."_s);
}

TEST(ImportError, OneFailedFileIsSingular)
{
    EXPECT_EQ(failureOf({"a.mov"}), u"1 file didn't copy cleanly (a.mov) — nothing was deleted from the source."_s);
}

TEST(ImportError, LinksThatAMoveRefusesAreNamedWithTheWayOut)
{
    const FileUrl link("/shoot/a.mov");
    EXPECT_EQ(
        (ImportError{LinkedSources{{link}}}.description()),
        u"1 file is a link out of this folder (a.mov), and only footage that lies in it can be moved — copy it instead."_s);
    EXPECT_EQ((ImportError{LinkedSources{{link, link, link, link}}}.description()),
              u"4 files are links out of this folder (a.mov, a.mov, a.mov, …), and only footage that lies in it can be "
              "moved — copy it instead."_s);
}

TEST(ImportError, AMissingSourceIsNamed)
{
    EXPECT_EQ((ImportError{SourceMissing{FileUrl("/card/C0042.MP4")}}.description()),
              u"C0042.MP4 is no longer where it was — the card may have been ejected."_s);
}

TEST(ImportError, ARefusalOfTheSystemNamesTheFileAndTheReason)
{
    EXPECT_EQ((ImportError{SystemFailure{FileUrl("/card/a %1.mov"), std::make_error_code(std::errc::io_error)}}
                   .description()),
              u"a %1.mov couldn't be copied — Input/output error."_s);
}

TEST(FileNames, ANumberStandsBetweenStemAndExtension)
{
    EXPECT_EQ(numberedName("C0042.MP4", 1, 255), "C0042.MP4");
    EXPECT_EQ(numberedName("C0042.MP4", 2, 255), "C0042 2.MP4");
    EXPECT_EQ(numberedName("C0042.MP4", 13, 255), "C0042 13.MP4");
    EXPECT_EQ(numberedName("X", 2, 255), "X 2");
    EXPECT_EQ(numberedName(".mov", 2, 255), ".mov 2");
    EXPECT_EQ(numberedName("a.b.mov", 2, 255), "a.b 2.mov");
}

TEST(FileNames, AStemThatLeavesNoRoomIsCutBetweenCharacters)
{
    const std::string house = "\U0001F3E0"; // four bytes
    EXPECT_EQ(numberedName(house + house + house + ".mov", 2, 16), house + house + " 2.mov");
    EXPECT_EQ(numberedName(house + house + house + ".mov", 2, 13), house + " 2.mov");
    EXPECT_EQ(numberedName(std::string(251, 'a') + ".mov", 2, 255), std::string(249, 'a') + " 2.mov");
    EXPECT_EQ(numberedName("a." + std::string(253, 'b'), 2, 255), "a." + std::string(251, 'b') + " 2");
    EXPECT_EQ(numberedName(std::string(255, '\x80'), 2, 255), std::string(253, '\x80') + " 2");
}

RC_GTEST_PROP(FileNamesProperty, NumberedNamesFitDifferAndStayValidText, ())
{
    const auto characters = *rc::gen::container<std::vector<std::string>>(
        rc::gen::element<std::string>("a", ".", "é", "部", "\U0001F3E0", " "));
    std::string name = "x";
    for (const std::string &character : characters) {
        name += name.size() + character.size() <= 40 ? character : "";
    }
    const auto longest = static_cast<std::size_t>(*rc::gen::inRange(12, 60));
    std::set<std::string> names;
    for (int n = 1; n <= 20; ++n) {
        const std::string numbered = numberedName(name, n, longest);
        RC_ASSERT(numbered.size() <= longest);
        RC_ASSERT(isUtf8(numbered));
        names.insert(numbered);
    }
    RC_ASSERT(names.size() == 20U);
}

TEST(FileNames, ABinIsOneFolderWhateverItIsCalled)
{
    EXPECT_EQ(binFolderName(u"Hallway / Stairs"_s), "Hallway - Stairs");
    EXPECT_EQ(binFolderName(u"a:b/c::d"_s), "a-b-c--d");
    EXPECT_EQ(binFolderName(u".."_s), "--");
    EXPECT_EQ(binFolderName(u"."_s), "-");
    EXPECT_EQ(binFolderName(u"..."_s), "...");
    EXPECT_EQ(binFolderName(u"ends in a blank "_s), "ends in a blank ");
    EXPECT_EQ(binFolderName(u"R&D\nline"_s), "R&D\nline");
    EXPECT_EQ(binFolderName(QString(u"nul"_s + QChar(0))), "nul-");
    EXPECT_EQ(binFolderName(QString(300, u'é')).size(), 254U);
    EXPECT_EQ(binFolderName(u""_s), "");
}
