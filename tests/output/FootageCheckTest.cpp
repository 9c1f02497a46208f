#include <filesystem>

#include <gtest/gtest.h>

#include "core/clips/ClipListing.h"
#include "output/FootageCheck.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

class FootageCheckTest : public testing::Test
{
protected:
    [[nodiscard]] FootageCheck check() const { return looksLikeFootage(FileUrl(card.path())); }

    void fill(const std::string &folder, int count) const
    {
        for (int i = 0; i < count; ++i) {
            (void)card.write(folder + "/" + std::to_string(i) + ".txt");
        }
    }

    // Two folders at the root, in the order in which the file system will tell of them.
    [[nodiscard]] std::pair<std::string, std::string> twoFolders() const
    {
        std::filesystem::create_directory(card / "a");
        std::filesystem::create_directory(card / "b");
        const std::string first = std::filesystem::directory_iterator(card.path())->path().filename();
        return {first, first == "a" ? "b" : "a"};
    }

    const TempFolder card;
};

} // namespace

TEST_F(FootageCheckTest, ADcimFolderTellsBeforeAnythingElseIsRead)
{
    fill(".", 500);
    std::filesystem::create_directory(card / "DCIM");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = true, .entries = 0}));
}

TEST_F(FootageCheckTest, AFileNamedDcimIsNone)
{
    (void)card.write("DCIM");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 1}));
}

TEST_F(FootageCheckTest, EveryKindOfVideoFileTellsInAnyCase)
{
    for (const char *name :
         {"a.mp4", "a.MOV", "a.m4v", "a.MXF", "a.avi", "a.mts", "a.M2ts", "a.braw", "a.insv", "two.dots.mp4"}) {
        const TempFolder disk;
        (void)disk.write(name);
        EXPECT_EQ(looksLikeFootage(FileUrl(disk.path())), (FootageCheck{.looksLikeFootage = true, .entries = 1}))
            << name;
    }
}

TEST_F(FootageCheckTest, OtherFilesAndAnEmptyVolumeTellNothing)
{
    EXPECT_EQ(check(), FootageCheck{});
    for (const char *name : {"a.jpg", "mp4", "a.mp4.txt", "a.mp", "a.mp44"}) {
        (void)card.write(name);
    }
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 5}));
}

TEST_F(FootageCheckTest, ACompanionFileIsNoEvidenceOfFootage)
{
    (void)card.write("._C0001.MP4");
    EXPECT_EQ(check(), FootageCheck{});
    (void)card.write("C0001.MP4");
    EXPECT_TRUE(check().looksLikeFootage);
}

TEST_F(FootageCheckTest, AClipAtTheThirdLevelTellsAndOneAtTheFourthDoesNotThoughTheListingFindsIt)
{
    (void)card.write("a/b/c/clip.mp4");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 4}));
    EXPECT_EQ(listClips(FileUrl(card.path())).size(), 1U);
    (void)card.write("a/b/clip.mp4");
    EXPECT_TRUE(check().looksLikeFootage);
}

TEST_F(FootageCheckTest, WhatLiesBelowTheFourthLevelIsNotEvenCounted)
{
    (void)card.write("a/b/c/d/e/clip.mp4");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 4}));
}

TEST_F(FootageCheckTest, ADiskWhoseFirstClipComesAfterFourHundredEntriesIsNotTakenForACard)
{
    const auto [first, second] = twoFolders();
    (void)card.write(second + "/clip.mp4");
    fill(first, 397); // with the two folders, the clip is the four hundredth entry
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = true, .entries = 400}));
    (void)card.write(first + "/one more");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 400}));
}

TEST_F(FootageCheckTest, OfTwentyThousandFilesNoMoreThanFourHundredAreRead)
{
    fill("archive", 20'000);
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 400}));
}

TEST_F(FootageCheckTest, HiddenFoldersAndTheInsideOfPackagesAreLeftAlone)
{
    (void)card.write(".Trashes/clip.mp4");
    (void)card.write("Library.fcpbundle/clip.mp4");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 1}));
}

TEST_F(FootageCheckTest, AFolderNamedLikeAClipTells)
{
    std::filesystem::create_directory(card / "clip.mov");
    EXPECT_TRUE(check().looksLikeFootage);
}

TEST_F(FootageCheckTest, LinksToFoldersAreNotFollowed)
{
    const TempFolder elsewhere;
    (void)elsewhere.write("clip.mp4");
    std::filesystem::create_directory_symlink(elsewhere.path(), card / "link");
    std::filesystem::create_directory_symlink(card.path(), card / "loop");
    EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 2}));
}

TEST_F(FootageCheckTest, WhatCanNotBeReadShowsNothing)
{
    EXPECT_EQ(looksLikeFootage(FileUrl(card / "gone")), FootageCheck{});
    EXPECT_EQ(looksLikeFootage(FileUrl(card.write("file"))), FootageCheck{});
    (void)card.write("closed/clip.mp4");
    std::filesystem::permissions(card / "closed", std::filesystem::perms::none);
    std::filesystem::permissions(card.path(), std::filesystem::perms::all);
    {
        const Unprivileged unprivileged;
        EXPECT_EQ(check(), (FootageCheck{.looksLikeFootage = false, .entries = 2}));
    }
    std::filesystem::permissions(card / "closed", std::filesystem::perms::all);
}

TEST_F(FootageCheckTest, AStoppedCheckSaysNo)
{
    (void)card.write("clip.mp4");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(looksLikeFootage(FileUrl(card.path()), stop.get_token()), FootageCheck{});
}
