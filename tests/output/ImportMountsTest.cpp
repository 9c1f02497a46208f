// Copies on file systems that were mounted for the purpose. Without the right to mount they are skipped, and say why.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "tests/output/Footage.h"
#include "tests/output/Mount.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

namespace {

std::int64_t freeBytes(const fs::path &path)
{
    struct statvfs volume
    {};
    EXPECT_EQ(::statvfs(path.c_str(), &volume), 0);
    return static_cast<std::int64_t>(volume.f_bavail * volume.f_frsize);
}

fs::path sparseFile(const TempFolder &folder, std::int64_t size)
{
    const fs::path file = folder.write("sparse.mov");
    fs::resize_file(file, static_cast<std::uintmax_t>(size));
    return file;
}

void forget(const fs::path &file)
{
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    ::fsync(fd);
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    ::close(fd);
}

// Two clips on the usual disk, the one of several chunks.
struct Shoot
{
    TempFolder folder;
    std::string large = footage(2, 9 * megabyte + 1234);
    std::vector<ClipToOrganize> clips{clipIn(folder.write("card/large.mov", large), u"Kitchen"_s),
                                      clipIn(folder.write("card/small.mov", "small"), u"Pool"_s)};

    void expectSourcesWhole() const
    {
        EXPECT_EQ(filesBeneath(folder / "card"),
                  (std::map<std::string, std::string>{{"large.mov", large}, {"small.mov", "small"}}));
    }
};

void expectMovesWhole(const Mount &mount)
{
    const Shoot shoot;
    const auto answer = moveByBin(shoot.clips, mount.path() / "root");
    ASSERT_TRUE(answer) << answer.error().description().toStdString();
    EXPECT_EQ(filesBeneath(mount.path() / "root"),
              (std::map<std::string, std::string>{{"Kitchen/large.mov", shoot.large}, {"Pool/small.mov", "small"}}));
    EXPECT_THAT(namesBeneath(shoot.folder / "card"), IsEmpty());
}

} // namespace

TEST(ImportMounts, AnEmptyListOnAVolumeWithNothingFreeFails)
{
    const Mount mount(Mount::Kind::memory, 16 * 4096);
    REQUIRE_MOUNTED(mount);
    writeContent(mount.path() / "full", std::string(static_cast<std::size_t>(freeBytes(mount.path())), 'x'));
    EXPECT_EQ(copyFiles({}, mount.path()), tl::unexpected(ImportError{InsufficientSpace{0, 0}}));
    EXPECT_EQ(copyByBin({}, mount.path()), tl::unexpected(ImportError{InsufficientSpace{0, 0}}));
}

TEST(ImportMounts, NeededEqualToAvailableFailsAndOneByteLessPasses)
{
    const Mount mount(Mount::Kind::memory, 2 * megabyte);
    REQUIRE_MOUNTED(mount);
    const TempFolder folder;
    const std::int64_t available = freeBytes(mount.path());
    const fs::path source = sparseFile(folder, available);
    EXPECT_EQ(copyFiles({FileUrl(source)}, mount.path()),
              tl::unexpected(ImportError{InsufficientSpace{available, available}}));
    EXPECT_THAT(namesBeneath(mount.path()), IsEmpty());
    fs::resize_file(source, static_cast<std::uintmax_t>(available - 1));
    EXPECT_TRUE(copyFiles({FileUrl(source)}, mount.path()));
}

TEST(ImportMounts, AMoveIntoMemoryArrivesWhole)
{
    const Mount mount(Mount::Kind::memory, 32 * megabyte);
    REQUIRE_MOUNTED(mount);
    expectMovesWhole(mount);
}

TEST(ImportMounts, ADiskThatSomebodyElseFillsMeanwhileFailsTheCopyAndLeavesNothingOfIt)
{
    for (const Mount::Kind kind : {Mount::Kind::memory, Mount::Kind::ext4}) {
        const Mount mount(kind, 24 * megabyte);
        REQUIRE_MOUNTED(mount);
        const Shoot shoot;
        class Filling : public FileOperations
        {
        public:
            explicit Filling(const fs::path &folder) : m_folder(folder) {}
            ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
            {
                if (offset > 0) {
                    // Till there is room for a piece of the next chunk and no more.
                    const int other = ::open((m_folder / "other").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
                    const std::int64_t free = freeBytes(m_folder) - std::int64_t(2 * megabyte);
                    EXPECT_EQ(::posix_fallocate(other, 0, std::max<std::int64_t>(free, 1)), 0);
                    ::close(other);
                }
                return FileOperations::write(fd, data, size, offset);
            }

        private:
            fs::path m_folder;
        };
        const auto answer = moveByBin(shoot.clips, mount.path(), VerifyLevel::sizeOnly, Filling(mount.path()));
        EXPECT_EQ(answer, tl::unexpected(ImportError{VerificationFailed{{shoot.clips[0].url}}}));
        shoot.expectSourcesWhole();
        EXPECT_THAT(namesBeneath(mount.path()), ElementsAre("Pool/small.mov", "other"));
    }
}

TEST(ImportMounts, AReadOnlyDestinationFailsAndASourceThatCannotBeDeletedDoesNot)
{
    const Mount mount(Mount::Kind::memory, 16 * megabyte);
    REQUIRE_MOUNTED(mount);
    const TempFolder folder;
    writeContent(mount.path() / "a.mov", "a");
    mount.makeReadOnly();
    EXPECT_EQ(copyFiles({FileUrl(folder.write("b.mov"))}, mount.path()),
              tl::unexpected(ImportError{
                  SystemFailure{FileUrl(folder / "b.mov"), std::make_error_code(std::errc::read_only_file_system)}}));
    EXPECT_TRUE(moveByBin({clipIn(mount.path() / "a.mov", u"A"_s)}, folder / "root"));
    EXPECT_EQ(bytesOf(mount.path() / "a.mov"), "a");
    EXPECT_EQ(bytesOf(folder / "root/A/a.mov"), "a");
}

TEST(ImportMounts, ADestinationThatIsUnmountedUnderTheCopyDeletesNothing)
{
    const Mount mount(Mount::Kind::ext4, 32 * megabyte);
    REQUIRE_MOUNTED(mount);
    class Detaching : public FileOperations
    {
    public:
        explicit Detaching(const Mount &disk) : m_mount(&disk) {}
        int sync(int fd) const override
        {
            m_mount->detach();
            return FileOperations::sync(fd);
        }

    private:
        const Mount *m_mount;
    };
    const Shoot shoot;
    fs::create_directories(mount.path() / "Kitchen");
    fs::create_directories(mount.path() / "Pool");
    EXPECT_FALSE(moveByBin(shoot.clips, mount.path(), VerifyLevel::sizeOnly, Detaching(mount)));
    shoot.expectSourcesWhole();
    const Mount second(Mount::Kind::ext4, 32 * megabyte);
    REQUIRE_MOUNTED(second);
    EXPECT_FALSE(copyFiles({shoot.clips[0].url}, second.path(), VerifyLevel::checksum, Detaching(second)));
}

TEST(ImportMounts, ACardThatCannotBeReadInTheMiddleOfAClipFailsIt)
{
    Mount mount(Mount::Kind::ext4, 48 * megabyte);
    REQUIRE_MOUNTED(mount);
    const TempFolder folder;
    const fs::path source = mount.path() / "large.mov";
    writeContent(source, footage(1, 32 * megabyte));
    forget(source);
    fs::resize_file(mount.image(), 24 * megabyte); // the rest of the card is gone
    EXPECT_EQ(copyFiles({FileUrl(source)}, folder / "shoot"),
              tl::unexpected(ImportError{SystemFailure{FileUrl(source), std::make_error_code(std::errc::io_error)}}));
    EXPECT_THAT(namesBeneath(folder / "shoot"), IsEmpty());
    EXPECT_EQ(moveByBin({clipIn(source, u"A"_s)}, folder / "root"),
              tl::unexpected(ImportError{VerificationFailed{{FileUrl(source)}}}));
    EXPECT_TRUE(fs::exists(source));
}

TEST(ImportMounts, ADiskThatLosesWhatWasWrittenIsCaughtWhenItIsReadBack)
{
    // The image is cut short after the copy was written and before it is synced: what was written can't be kept.
    const Mount mount(Mount::Kind::ext4, 48 * megabyte);
    REQUIRE_MOUNTED(mount);
    class Losing : public FileOperations
    {
    public:
        explicit Losing(const fs::path &image) : m_image(image) {}
        int sync(int fd) const override
        {
            fs::resize_file(m_image, megabyte);
            return FileOperations::sync(fd);
        }

    private:
        fs::path m_image;
    };
    const Shoot shoot;
    EXPECT_FALSE(moveByBin(shoot.clips, mount.path(), VerifyLevel::sizeOnly, Losing(mount.image())));
    shoot.expectSourcesWhole();
}

TEST(ImportMounts, WhereBlocksCanBeSharedACopyTakesNoRoomAndAMoveArrivesWhole)
{
    const Mount mount(Mount::Kind::btrfs, 256 * megabyte);
    REQUIRE_MOUNTED(mount);
    expectMovesWhole(mount);
    const fs::path source = mount.path() / "card.mov";
    const std::string content = footage(5, 60 * megabyte);
    writeContent(source, content);
    forget(source);
    const std::int64_t before = freeBytes(mount.path());
    for (const VerifyLevel level : {VerifyLevel::sizeOnly, VerifyLevel::checksum}) {
        const auto answer = copyFiles({FileUrl(source)}, mount.path() / "shoot", level);
        ASSERT_TRUE(answer) << answer.error().description().toStdString();
    }
    EXPECT_LT(before - freeBytes(mount.path()), std::int64_t(30 * megabyte));
    EXPECT_EQ(bytesOf(mount.path() / "shoot/card.mov"), content);
    EXPECT_EQ(bytesOf(mount.path() / "shoot/card 2.mov"), content);
}

TEST(ImportMounts, OnACardsFileSystemNamesThatDifferOnlyInCaseEndApart)
{
    const Mount mount(Mount::Kind::exfat, 64 * megabyte);
    REQUIRE_MOUNTED(mount);
    expectMovesWhole(mount);
    const TempFolder folder;
    ASSERT_TRUE(copyFiles({FileUrl(folder.write("1/clip.mov", "one")), FileUrl(folder.write("2/CLIP.MOV", "two"))},
                          mount.path() / "shoot"));
    EXPECT_THAT(filesBeneath(mount.path() / "shoot"), ElementsAre(Pair("CLIP 2.MOV", "two"), Pair("clip.mov", "one")));
    ASSERT_TRUE(copyByBin({clipIn(folder / "1/clip.mov", u"Kitchen"_s), clipIn(folder / "2/CLIP.MOV", u"kitchen"_s)},
                          mount.path() / "root"));
    EXPECT_THAT(namesBeneath(mount.path() / "root"),
                ElementsAre("Kitchen/CLIP 2.MOV", "Kitchen/clip.mov", "Kitchen/large.mov", "Pool/small.mov"));
}

TEST(ImportMounts, OnACardsFileSystemAMoveRemovesASourceWithAnotherNumberOnlyIfItsBytesAreTheSame)
{
    const Mount mount(Mount::Kind::exfat, 64 * megabyte);
    REQUIRE_MOUNTED(mount);
    const TempFolder folder;
    const auto lay = [&](const std::string &name, const std::string &content) {
        // Written elsewhere first, so that the path leads to a new file of the old size and date.
        const fs::path fresh = mount.path() / "fresh";
        writeContent(fresh, content);
        const std::array times{timespec{.tv_sec = 1'500'000'000}, timespec{.tv_sec = 1'500'000'000}};
        EXPECT_EQ(::utimensat(AT_FDCWD, fresh.c_str(), times.data(), 0), 0);
        fs::rename(fresh, mount.path() / name);
        struct stat status
        {};
        EXPECT_EQ(::stat((mount.path() / name).c_str(), &status), 0);
        return status.st_ino;
    };
    const ino_t before = lay("same.mov", "bytes");
    lay("other.mov", "bytes");
    const std::vector clips{clipIn(mount.path() / "same.mov", u"A"_s), clipIn(mount.path() / "other.mov", u"A"_s)};
    const auto layAgain = [&](int done, int) {
        if (done == 2) {
            EXPECT_NE(lay("same.mov", "bytes"), before);
            lay("other.mov", "BYTES");
        }
    };
    EXPECT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(folder / "root"), true, {VerifyLevel::sizeOnly, layAgain}));
    EXPECT_THAT(filesBeneath(mount.path()), ElementsAre(Pair("other.mov", "BYTES")));
    EXPECT_THAT(filesBeneath(folder / "root"), ElementsAre(Pair("A/other.mov", "bytes"), Pair("A/same.mov", "bytes")));
}
