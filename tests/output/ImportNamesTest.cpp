// The names under which copies end up: those that are taken, long, of any bytes, and those of bins.
#include <gmock/gmock.h>

#include "tests/output/Footage.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

TEST(MediaImporter, TwoClipsOfOneNameInOneBinEndApartAndInTwoBinsBothKeepIt)
{
    const TempFolder folder;
    const std::vector clips{clipIn(folder.write("1/X.MOV", "one"), u"Kitchen"_s),
                            clipIn(folder.write("2/X.MOV", "two"), u"Kitchen"_s),
                            clipIn(folder.write("3/X.MOV", "three"), u"Pool"_s)};
    EXPECT_EQ(copyByBin(clips, folder / "root"),
              (std::map<QUuid, FileUrl>{{clips[0].id, FileUrl(folder / "root/Kitchen/X.MOV")},
                                        {clips[1].id, FileUrl(folder / "root/Kitchen/X 2.MOV")},
                                        {clips[2].id, FileUrl(folder / "root/Pool/X.MOV")}}));
    EXPECT_THAT(filesBeneath(folder / "root"),
                ElementsAre(Pair("Kitchen/X 2.MOV", "two"), Pair("Kitchen/X.MOV", "one"), Pair("Pool/X.MOV", "three")));
}

TEST(MediaImporter, AFileWithoutAnExtensionCollidesToANumberAtItsEnd)
{
    const TempFolder folder;
    folder.write("shoot/X", "taken");
    folder.write("shoot/X 2", "taken too");
    ASSERT_TRUE(copyFiles({FileUrl(folder.write("card/X", "new"))}, folder / "shoot"));
    EXPECT_THAT(filesBeneath(folder / "shoot"),
                ElementsAre(Pair("X", "taken"), Pair("X 2", "taken too"), Pair("X 3", "new")));
}

TEST(MediaImporter, ANameThatALinkToNowhereHoldsIsTaken)
{
    const TempFolder folder;
    fs::create_directories(folder / "shoot");
    fs::create_symlink("nowhere", folder / "shoot/a.mov");
    ASSERT_TRUE(copyFiles({FileUrl(folder.write("a.mov", "a"))}, folder / "shoot"));
    EXPECT_THAT(filesBeneath(folder / "shoot"), ElementsAre(Pair("a 2.mov", "a")));
}

TEST(MediaImporter, NamesOf255BytesStillEndApart)
{
    const TempFolder folder;
    const std::string name = std::string(251, 'n') + ".mov";
    ASSERT_TRUE(copyFiles({FileUrl(folder.write("1/" + name, "one")), FileUrl(folder.write("2/" + name, "two"))},
                          folder / "shoot"));
    EXPECT_THAT(filesBeneath(folder / "shoot"),
                UnorderedElementsAre(Pair(name, "one"), Pair(std::string(249, 'n') + " 2.mov", "two")));
}

TEST(MediaImporter, NamesOfAnyBytesAreKeptAsTheyAre)
{
    const TempFolder folder;
    std::vector<FileUrl> urls;
    std::map<std::string, std::string> contents;
    for (const std::string name : {"caf\xE9.mov", "line\nfeed.mov", "100 % & 'more'.mov", "\U0001F3E0.mov", " .mov "}) {
        contents[name] = "content of " + name;
        urls.emplace_back(folder.write("card" / fs::path(name), contents[name]));
    }
    ASSERT_TRUE(copyFiles(urls, folder / "shoot"));
    EXPECT_EQ(filesBeneath(folder / "shoot"), contents);
}

TEST(MediaImporter, ABinWithASlashOrAColonYieldsAFolderWithAHyphen)
{
    const TempFolder folder;
    ASSERT_TRUE(
        copyByBin({clipIn(folder.write("a.mov"), u"Hallway / Stairs"_s), clipIn(folder.write("b.mov"), u"a:b"_s)},
                  folder / "root"));
    EXPECT_THAT(namesBeneath(folder / "root"), ElementsAre("Hallway - Stairs/a.mov", "a-b/b.mov"));
}

TEST(MediaImporter, ABinCalledDotDotStaysBeneathTheRootAndAnUnnamedOneIsTheRoot)
{
    const TempFolder folder;
    ASSERT_TRUE(copyByBin({clipIn(folder.write("a.mov"), u".."_s), clipIn(folder.write("b.mov"), u""_s),
                           clipIn(folder.write("c.mov"), u"blank "_s), clipIn(folder.write("d.mov"), u"A & B\nC"_s)},
                          folder / "root"));
    EXPECT_THAT(namesBeneath(folder / "root"),
                UnorderedElementsAre("--/a.mov", "b.mov", "blank /c.mov", "A & B\nC/d.mov"));
}

TEST(MediaImporter, AThousandFilesOfOneNameEndApart)
{
    const TempFolder folder(memoryFolder());
    std::vector<FileUrl> urls;
    for (int i = 0; i < 1000; ++i) {
        urls.emplace_back(folder.write(std::to_string(i) + "/a.mov", std::to_string(i)));
    }
    ASSERT_TRUE(copyFiles(urls, folder / "shoot", VerifyLevel::sizeOnly));
    EXPECT_EQ(bytesOf(folder / "shoot/a.mov"), "0");
    EXPECT_EQ(bytesOf(folder / "shoot/a 1000.mov"), "999");
    EXPECT_THAT(namesBeneath(folder / "shoot"), SizeIs(1000));
}
