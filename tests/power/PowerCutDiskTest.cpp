// The disk of the power cut tests itself: what it forgets and what it keeps.
#include <array>
#include <fstream>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "core/files/FileDescriptor.h"
#include "tests/power/PowerCuts.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

class PowerCutDiskTest : public testing::Test
{
protected:
    void SetUp() override { REQUIRE_POWER_CUT_DISK(); }

    const DiskContent oneFile{{"file", "bytes"}};

    static void write(const fs::path &file, std::string_view bytes) { std::ofstream(file, std::ios::binary) << bytes; }

    static void sync(const fs::path &place)
    {
        const FileDescriptor fd(::open(place.c_str(), O_RDONLY | O_CLOEXEC));
        ASSERT_EQ(::fsync(fd.get()), 0);
    }
};

} // namespace

TEST_F(PowerCutDiskTest, ForgetsWhatWasNotSynced)
{
    PowerCutDisk disk({{"kept", "old"}, {"moved", "whole"}, {"gone", "still here"}});
    const fs::path root = disk.path();
    write(root / "kept", "new bytes");
    write(root / "new", "bytes");
    fs::rename(root / "moved", root / "elsewhere");
    fs::remove(root / "gone");
    EXPECT_TRUE(fs::exists(root / "elsewhere"));
    disk.unmount();
    EXPECT_THAT(disk.left(Survival::nothing),
                UnorderedElementsAre(Pair("kept", "old"), Pair("moved", "whole"), Pair("gone", "still here")));
    EXPECT_THAT(disk.left(Survival::names),
                UnorderedElementsAre(Pair("kept", "old"), Pair("elsewhere", "whole"), Pair("new", "")));
    EXPECT_THAT(disk.left(Survival::everything),
                UnorderedElementsAre(Pair("kept", "new bytes"), Pair("elsewhere", "whole"), Pair("new", "bytes")));
}

TEST_F(PowerCutDiskTest, KeepsAFileOnlyWhenItsBytesItsNameAndAllFoldersAboveAreSynced)
{
    for (const std::vector<const char *> &synced :
         {std::vector{"a/b/file", "a/b", "a", ""}, {"a/b", "a", ""}, {"a/b/file", "a", ""}, {"a/b/file", "a/b", ""}}) {
        PowerCutDisk disk;
        fs::create_directories(disk.path() / "a/b");
        write(disk.path() / "a/b/file", "bytes");
        for (const char *place : synced) {
            sync(disk.path() / place);
        }
        disk.unmount();
        const DiskContent left = disk.left(Survival::nothing);
        EXPECT_EQ(left.contains("a/b/file") && left.at("a/b/file") == "bytes", synced.size() == 4);
    }
}

TEST_F(PowerCutDiskTest, AnswersEveryCallWithAnErrorOnceThePowerIsCut)
{
    PowerCutDisk disk(oneFile);
    disk.cutAfter(0);
    struct stat status
    {};
    EXPECT_EQ(::stat((disk.path() / "file").c_str(), &status), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(::mkdir((disk.path() / "folder").c_str(), 0755), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_TRUE(disk.isCut());
    disk.unmount();
    EXPECT_EQ(disk.left(Survival::everything), oneFile);
}

TEST_F(PowerCutDiskTest, IsGoneOnceItIsUnmounted)
{
    PowerCutDisk disk(oneFile);
    EXPECT_TRUE(fs::exists(disk.path() / "file"));
    disk.unmount();
    EXPECT_TRUE(fs::is_empty(disk.path()));
}
