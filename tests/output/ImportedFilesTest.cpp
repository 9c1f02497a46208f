// Files of all kinds: their attributes, links to them, very many of them, and one of mostly holes.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

TEST(MediaImporter, KeepsTimesPermissionsAndExtendedAttributes)
{
    const TempFolder folder;
    const fs::path source = folder.write("card/a.mov", "a");
    ASSERT_EQ(::setxattr(source.c_str(), "user.camera", "TestCam", 7, 0), 0);
    fs::permissions(source, fs::perms(04555));
    const std::array times{timespec{.tv_sec = 1'500'000'000, .tv_nsec = 1},
                           timespec{.tv_sec = 1'400'000'000, .tv_nsec = 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, source.c_str(), times.data(), 0), 0);

    ASSERT_TRUE(copyFiles({FileUrl(source)}, folder / "shoot"));

    struct stat copy
    {};
    ASSERT_EQ(::stat((folder / "shoot/a.mov").c_str(), &copy), 0);
    EXPECT_EQ(copy.st_mode & 07777, 0555U) << "without the setuid bit";
    EXPECT_EQ(copy.st_mtim.tv_sec, 1'400'000'000);
    EXPECT_EQ(copy.st_mtim.tv_nsec, 123'456'789);
    char value[16] = {};
    EXPECT_EQ(::getxattr((folder / "shoot/a.mov").c_str(), "user.camera", value, sizeof value), 7);
    EXPECT_STREQ(value, "TestCam");
}

TEST(MediaImporter, AFolderNamedLikeAClipAndAPipeAreNotCopiedAndDoNotHang)
{
    const TempFolder folder;
    fs::create_directories(folder / "x.mov");
    ASSERT_EQ(::mkfifo((folder / "pipe.mov").c_str(), 0666), 0);
    for (const fs::path &source : {folder / "x.mov", folder / "pipe.mov"}) {
        EXPECT_EQ(copyFiles({FileUrl(source)}, folder / "shoot"), tl::unexpected(notClean({source})));
    }
    EXPECT_THAT(namesBeneath(folder / "shoot"), IsEmpty());
}

TEST(MediaImporter, HardAndSymbolicLinksToOneFileAreEachCopiedWholeAndAllGoInAMove)
{
    const TempFolder folder;
    const fs::path file = folder.write("card/1.mov", "footage");
    fs::create_hard_link(file, folder / "card/2.mov");
    fs::create_hard_link(file, folder / "card/4.mov");
    fs::create_symlink("1.mov", folder / "card/3.mov");
    const std::vector clips{clipIn(file, u"A"_s), clipIn(folder / "card/2.mov", u"A"_s),
                            clipIn(folder / "card/3.mov", u"A"_s), clipIn(folder / "card/4.mov", u"A"_s)};
    ASSERT_TRUE(moveByBin(clips, folder / "root"));
    EXPECT_THAT(filesBeneath(folder / "root"), ElementsAre(Pair("A/1.mov", "footage"), Pair("A/2.mov", "footage"),
                                                           Pair("A/3.mov", "footage"), Pair("A/4.mov", "footage")));
    EXPECT_TRUE(fs::is_empty(folder / "card"));
}

TEST(MediaImporter, ALinkOutOfTheShootIsCopiedByWhatItPointsTo)
{
    const TempFolder folder;
    folder.write("raid/C0001.mov", "on the RAID");
    const fs::path file = folder.write("shoot/a.mov", "a");
    fs::create_symlink("../raid/C0001.mov", folder / "shoot/link.mov");
    ASSERT_TRUE(copyByBin({clipIn(folder / "shoot/link.mov", u"A"_s), clipIn(file, u"A"_s)}, folder / "root"));
    EXPECT_THAT(filesBeneath(folder / "root"), ElementsAre(Pair("A/a.mov", "a"), Pair("A/link.mov", "on the RAID")));
    EXPECT_FALSE(fs::is_symlink(folder / "root/A/link.mov"));
    ASSERT_TRUE(copyFiles({FileUrl(folder / "shoot/link.mov"), FileUrl(file)}, folder / "copied"));
    EXPECT_THAT(filesBeneath(folder / "copied"), ElementsAre(Pair("a.mov", "a"), Pair("link.mov", "on the RAID")));
}

TEST(MediaImporter, AMoveRefusesLinksOutOfTheShootBeforeAnythingIsCopied)
{
    const TempFolder folder;
    folder.write("raid/C0001.mov", "on the RAID");
    fs::create_symlink(folder / "raid", folder / "linked raid");
    const fs::path file = folder.write("shoot/1/a.mov", "a");
    const fs::path other = folder.write("shoot/2/b.mov", "b");
    fs::create_symlink("../../raid/C0001.mov", folder / "shoot/1/link.mov");
    fs::create_symlink("../2/b.mov", folder / "shoot/1/inside.mov");
    EXPECT_EQ(moveByBin({clipIn(file, u"A"_s), clipIn(folder / "shoot/1/link.mov", u"A"_s), clipIn(other, u"A"_s),
                         clipIn(folder / "shoot/1/inside.mov", u"A"_s)},
                        folder / "root"),
              tl::unexpected(ImportError{LinkedSources{{FileUrl(folder / "shoot/1/link.mov")}}}));
    EXPECT_FALSE(fs::exists(folder / "root"));
    EXPECT_TRUE(fs::is_symlink(folder / "shoot/1/link.mov"));
    ASSERT_TRUE(moveByBin({clipIn(folder / "linked raid/C0001.mov", u"A"_s)}, folder / "root"))
        << "the whole shoot may be reached through a link";
    EXPECT_THAT(namesBeneath(folder / "raid"), IsEmpty());
}

TEST(MediaImporter, ALinkToNowhereIsMissing)
{
    const TempFolder folder;
    fs::create_symlink("nowhere.mov", folder / "link.mov");
    EXPECT_EQ(copyFiles({FileUrl(folder / "link.mov")}, folder / "shoot"),
              tl::unexpected(ImportError{SourceMissing{FileUrl(folder / "link.mov")}}));
}

TEST(MediaImporter, TenThousandSmallFilesArriveWhole)
{
    const TempFolder folder(memoryFolder());
    std::vector<FileUrl> urls;
    for (int i = 0; i < 10'000; ++i) {
        urls.emplace_back(folder.write("card/" + std::to_string(i) + ".mov", std::to_string(i)));
    }
    ASSERT_TRUE(copyFiles(urls, folder / "shoot"));
    EXPECT_EQ(filesBeneath(folder / "shoot"), filesBeneath(folder / "card"));
}

TEST(MediaImporter, ASparseFileOfFiveGigabytesKeepsItsHolesAndItsBytes)
{
    const TempFolder folder;
    const fs::path source = folder.write("card/a.mov", "start");
    const std::int64_t size = 5'000'000'001;
    fs::resize_file(source, size);
    const std::string middle = footage(1, 100'000);
    const int fd = ::open(source.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(::pwrite(fd, middle.data(), middle.size(), 2'500'000'123), 100'000);
    ASSERT_EQ(::close(fd), 0);

    ASSERT_TRUE(copyFiles({FileUrl(source)}, folder / "shoot", VerifyLevel::sizeOnly));

    struct stat copy
    {};
    const fs::path destination = folder / "shoot/a.mov";
    ASSERT_EQ(::stat(destination.c_str(), &copy), 0);
    EXPECT_EQ(copy.st_size, size);
    EXPECT_LT(copy.st_blocks * 512, 1'000'000);
    const int read = ::open(destination.c_str(), O_RDONLY | O_CLOEXEC);
    std::string bytes(middle.size(), '\0');
    EXPECT_EQ(::pread(read, bytes.data(), bytes.size(), 2'500'000'123), 100'000);
    EXPECT_EQ(bytes, middle);
    bytes.resize(5);
    EXPECT_EQ(::pread(read, bytes.data(), 5, 0), 5);
    EXPECT_EQ(bytes, "start");
    ::close(read);
}
