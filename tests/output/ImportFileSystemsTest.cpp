// File systems that do less than others, or do it otherwise: copies are whole on them too. The calls of the system are
// real but for those that a test answers as such a file system does.
#include <atomic>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/output/ImportFaults.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::Pair;

namespace fs = std::filesystem;

TEST_F(ImportFaults, ShortAndInterruptedReadsAndWritesStillGiveAWholeCopy)
{
    class Stuttering : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            return m_calls++ % 3 == 0 ? failing(EINTR)
                                      : FileOperations::read(fd, data, std::min<std::size_t>(size, 777'216), offset);
        }
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            return m_calls++ % 3 == 0 ? failing(EINTR)
                                      : FileOperations::write(fd, data, std::min<std::size_t>(size, 777'216), offset);
        }

    private:
        mutable std::atomic<int> m_calls = 0;
    };
    ASSERT_TRUE(moveByBin(clips, root, VerifyLevel::checksum, Stuttering()));
    expectMovedWhole();
}

TEST_F(ImportFaults, AFileSystemThatRefusesDirectReadingAndWritingStillGivesAWholeCopy)
{
    class NeverDirect : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            return isDirect(fd) ? failing(EINVAL) : FileOperations::read(fd, data, size, offset);
        }
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            return isDirect(fd) ? failing(EINVAL) : FileOperations::write(fd, data, size, offset);
        }

    private:
        static bool isDirect(int fd) { return (::fcntl(fd, F_GETFL) & O_DIRECT) != 0; }
    };
    ASSERT_TRUE(moveByBin(clips, root, VerifyLevel::checksum, NeverDirect()));
    expectMovedWhole();
}

TEST_F(ImportFaults, AVolumeThatTellsNoCapacityIsBoundlessAndAFullOneIsNot)
{
    class Untold : public FileOperations
    {
    public:
        explicit Untold(fsblkcnt_t blocks) : m_blocks(blocks) {}
        int statvfs(const char *, struct statvfs *volume) const override
        {
            *volume = {};
            volume->f_frsize = 4096;
            volume->f_blocks = m_blocks;
            return 0;
        }

    private:
        fsblkcnt_t m_blocks;
    };
    const auto size = static_cast<std::int64_t>(large.size() + small.size());
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, Untold(1)),
              tl::unexpected(ImportError{InsufficientSpace{size, 0}}));
    EXPECT_TRUE(copyFiles(urls, root, VerifyLevel::checksum, Untold(0)));
    ASSERT_TRUE(moveByBin(clips, folder / "moved", VerifyLevel::checksum, Untold(0)));
    EXPECT_THAT(namesBeneath(folder / "moved"), ElementsAre("Kitchen/large.mov", "Pool/small.mov"));
}

TEST_F(ImportFaults, OnAShareThatLetsOnlyTheHolderOfTheLockReadAndWriteACopyIsWhole)
{
    // As SMB does with a lock on a file: it binds whoever opened the file another time, in the same process too.
    class Share : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            return isLockedOut(fd) ? failing(EACCES) : FileOperations::read(fd, data, size, offset);
        }
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            return isLockedOut(fd) ? failing(EACCES) : FileOperations::write(fd, data, size, offset);
        }

    private:
        static bool isLockedOut(int fd)
        {
            // Taking a lock anew that one holds does nothing.
            return pathOf(fd).ends_with(".partial") && ::flock(fd, LOCK_EX | LOCK_NB) != 0;
        }
    };
    ASSERT_TRUE(moveByBin(clips, root, VerifyLevel::checksum, Share()));
    expectMovedWhole();
}

namespace {

// A file system that can't rename without clobbering, and may not know links either.
class OldFileSystem : public FileOperations
{
public:
    explicit OldFileSystem(bool linking) : m_linking(linking) {}
    int renameWithoutClobbering(int, const char *, const char *) const override { return failing(EINVAL); }
    int link(int folder, const char *from, const char *to) const override
    {
        return m_linking ? FileOperations::link(folder, from, to) : failing(EPERM);
    }

private:
    bool m_linking;
};

} // namespace

TEST_F(ImportFaults, WithoutARenameThatSparesOthersNamesAreStillNeverReplaced)
{
    for (const bool linking : {true, false}) {
        const fs::path shoot = folder / (linking ? "linked" : "placed");
        fs::create_directories(shoot);
        writeContent(shoot / "small.mov", "taken");
        ASSERT_TRUE(copyFiles(urls, shoot, VerifyLevel::checksum, OldFileSystem(linking)));
        EXPECT_EQ(filesBeneath(shoot), (std::map<std::string, std::string>{
                                           {"large.mov", large}, {"small 2.mov", small}, {"small.mov", "taken"}}));
        struct stat status
        {};
        ASSERT_EQ(::stat((shoot / "small 2.mov").c_str(), &status), 0);
        EXPECT_EQ(status.st_nlink, 1U);
    }
}

TEST_F(ImportFaults, NamesThatOnlyTheFileSystemTakesForTheSameEndApart)
{
    // As one does that folds the forms of Unicode: a name is refused where another form of it stands.
    class Folding : public FileOperations
    {
    public:
        int renameWithoutClobbering(int folder, const char *from, const char *to) const override
        {
            for (const auto &entry : fs::directory_iterator(pathOf(folder))) {
                if (composed(entry.path().filename().c_str()) == composed(to)) {
                    return failing(EEXIST);
                }
            }
            return FileOperations::renameWithoutClobbering(folder, from, to);
        }

    private:
        static QString composed(const char *name)
        {
            return QString::fromUtf8(name).normalized(QString::NormalizationForm_C);
        }
    };
    ASSERT_TRUE(copyFiles({FileUrl(folder.write("1/e\u0301.mov", "one")), FileUrl(folder.write("2/\u00E9.mov", "two"))},
                          root, VerifyLevel::checksum, Folding()));
    EXPECT_THAT(filesBeneath(root), ElementsAre(Pair("e\u0301.mov", "one"), Pair("\u00E9 2.mov", "two")));
}

TEST_F(ImportFaults, AnotherRunsTemporaryFileIsLeftAloneWhileThatRunLives)
{
    // A second run into the same folder begins while the first is in the middle of its large clip.
    int runs = 0;
    const FaultyReading files("large.mov", [&](void *, ssize_t count) {
        if (++runs == 1) {
            const pid_t other = ::fork();
            if (other == 0) {
                ::_exit(copyFiles({urls[1]}, root) ? 0 : 1);
            }
            int status = -1;
            EXPECT_EQ(::waitpid(other, &status, 0), other);
            EXPECT_EQ(status, 0);
        }
        return count;
    });
    ASSERT_TRUE(copyFiles({urls[0]}, root, VerifyLevel::checksum, files));
    EXPECT_EQ(filesBeneath(root), (std::map<std::string, std::string>{{"large.mov", large}, {"small.mov", small}}));
}
