// What goes wrong under a copy, and that nothing is lost by it. The calls of the system are real but for the one that
// a test makes fail.
#include <atomic>
#include <cerrno>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

namespace {

constexpr std::size_t chunk = 4 * 1024 * 1024;

int failing(int error)
{
    errno = error;
    return -1;
}

bool isFolder(int fd)
{
    struct stat status
    {};
    return ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
}

std::string pathOf(int fd)
{
    return fs::read_symlink("/proc/self/fd/" + std::to_string(fd));
}

// A shoot of two clips, the larger of them in several chunks, and what must be true of it whatever happens.
class ImportFaults : public testing::Test
{
protected:
    TempFolder folder;
    const std::string small = footage(1, 1000);
    const std::string large = footage(2, 3 * chunk + 1234);
    const std::vector<ClipToOrganize> clips{clipIn(folder.write("card/large.mov", large), u"Kitchen"_s),
                                            clipIn(folder.write("card/small.mov", small), u"Pool"_s)};
    const std::vector<FileUrl> urls{clips[0].url, clips[1].url};
    const fs::path root = folder / "root";

    // A move fails, says which clips weren't clean, and leaves every source and no partial file.
    void expectMoveFails(const FileOperations &files, const std::vector<FileUrl> &failed,
                         VerifyLevel level = VerifyLevel::sizeOnly)
    {
        EXPECT_EQ(moveByBin(clips, root, level, files), tl::unexpected(ImportError{VerificationFailed{failed}}));
        expectSourcesWhole();
        expectOnlyWholeCopies();
    }

    void expectSystemFailure(const FileOperations &files, int error)
    {
        EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, files),
                  tl::unexpected(ImportError{SystemFailure{urls[0], {error, std::generic_category()}}}));
        expectSourcesWhole();
        EXPECT_THAT(namesBeneath(root), IsEmpty());
    }

    void expectSourcesWhole()
    {
        EXPECT_EQ(filesBeneath(folder / "card"),
                  (std::map<std::string, std::string>{{"large.mov", large}, {"small.mov", small}}));
    }

    void expectOnlyWholeCopies()
    {
        for (const auto &[name, content] : fs::exists(root) ? filesBeneath(root) : decltype(filesBeneath(root))()) {
            EXPECT_TRUE(content == large || content == small) << name;
        }
    }

    void expectMovedWhole()
    {
        EXPECT_THAT(namesBeneath(folder / "card"), IsEmpty());
        EXPECT_EQ(filesBeneath(root),
                  (std::map<std::string, std::string>{{"Kitchen/large.mov", large}, {"Pool/small.mov", small}}));
    }
};

// Fails a read of the source, or changes what it gives, somewhere in the middle of the large clip.
class FaultyReading : public FileOperations
{
public:
    using Fault = std::function<ssize_t(void *data, ssize_t count)>;
    FaultyReading(std::string file, Fault fault) : m_file(std::move(file)), m_fault(std::move(fault)) {}

    ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
    {
        const ssize_t count = FileOperations::read(fd, data, size, offset);
        return offset == static_cast<off_t>(chunk) && pathOf(fd).ends_with(m_file) ? m_fault(data, count) : count;
    }

private:
    std::string m_file; // how its path ends
    Fault m_fault;
};

// Damages the nth reading of the large clip, counted from 1.
FaultyReading faultInReading(int reading, FaultyReading::Fault fault)
{
    const auto readings = std::make_shared<std::atomic<int>>(0);
    return {"large.mov",
            [=](void *data, ssize_t count) { return ++*readings == reading ? fault(data, count) : count; }};
}

ssize_t flipABit(void *data, ssize_t count)
{
    static_cast<char *>(data)[100] ^= 1;
    return count;
}

} // namespace

TEST_F(ImportFaults, AReadErrorInTheMiddleOfASourceFailsTheCopy)
{
    const FaultyReading files("large.mov", [](void *, ssize_t) { return failing(EIO); });
    expectSystemFailure(files, EIO);
    expectMoveFails(files, {urls[0]});
}

TEST_F(ImportFaults, AReadErrorOnReadingBackFailsTheCopyAndLeavesItUnproven)
{
    const FaultyReading files(".partial", [](void *, ssize_t) { return failing(EIO); });
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, files),
              tl::unexpected(ImportError{SystemFailure{urls[0], std::make_error_code(std::errc::io_error)}}));
    EXPECT_THAT(filesBeneath(root), ElementsAre(Pair("large.mov", large)));
    expectMoveFails(files, {urls[0]});
}

TEST_F(ImportFaults, ACardThatDiesAfterItsFileWasCopiedLeavesTheWholeCopy)
{
    const auto die = [](void *, ssize_t) { return failing(EIO); };
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, faultInReading(2, die)),
              tl::unexpected(ImportError{SystemFailure{urls[0], std::make_error_code(std::errc::io_error)}}));
    EXPECT_THAT(filesBeneath(root), ElementsAre(Pair("large.mov", large)));
    expectMoveFails(faultInReading(2, die), {urls[0]});
    EXPECT_THAT(namesBeneath(root), ElementsAre("Kitchen/large.mov", "Pool/small.mov", "large.mov"));
}

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

TEST_F(ImportFaults, ADiskThatFillsUpAfterAShortWriteFailsTheCopyAndLeavesNothingOfIt)
{
    class FillingUp : public FileOperations
    {
    public:
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            const off_t end = chunk + 8192;
            if (offset >= end) {
                return failing(ENOSPC);
            }
            return FileOperations::write(fd, data, std::min(size, static_cast<std::size_t>(end - offset)), offset);
        }
    };
    expectSystemFailure(FillingUp(), ENOSPC);
    expectMoveFails(FillingUp(), {urls[0]});
}

TEST_F(ImportFaults, AWriteErrorFailsTheCopy)
{
    class BadWriting : public FileOperations
    {
    public:
        ssize_t write(int, const void *, std::size_t, off_t) const override { return failing(EIO); }
    };
    expectSystemFailure(BadWriting(), EIO);
    expectMoveFails(BadWriting(), urls);
}

TEST_F(ImportFaults, ASyncThatFailsOnceAndThenSucceedsFailsTheCopy)
{
    class BadSync : public FileOperations
    {
    public:
        int sync(int fd) const override
        {
            return !isFolder(fd) && !m_failed.exchange(true) ? failing(EIO) : FileOperations::sync(fd);
        }

    private:
        mutable std::atomic<bool> m_failed = false;
    };
    expectSystemFailure(BadSync(), EIO);
    expectMoveFails(BadSync(), {urls[0]});
}

TEST_F(ImportFaults, AFolderThatCannotBeSyncedFailsWhatWasCopiedIntoIt)
{
    class BadFolderSync : public FileOperations
    {
    public:
        int sync(int fd) const override
        {
            return pathOf(fd).ends_with("/Kitchen") ? failing(EIO) : FileOperations::sync(fd);
        }
    };
    expectMoveFails(BadFolderSync(), {urls[0]});
}

TEST_F(ImportFaults, CopiesWhoseNamesMayNotLastAreAFailureOfTheirFolderUnlessAnotherCameFirst)
{
    class BadFolderSync : public FileOperations
    {
    public:
        int sync(int fd) const override
        {
            return pathOf(fd).ends_with("/root") ? failing(EIO) : FileOperations::sync(fd);
        }
    };
    fs::create_directories(root);
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::sizeOnly, BadFolderSync()),
              tl::unexpected(ImportError{SystemFailure{FileUrl(root), std::make_error_code(std::errc::io_error)}}));
    const FileUrl missing(folder / "card/missing.mov");
    EXPECT_EQ(copyFiles({urls[1], missing}, root, VerifyLevel::sizeOnly, BadFolderSync()),
              tl::unexpected(ImportError{SourceMissing{missing}}));
}

TEST_F(ImportFaults, AnErrorOnClosingFailsTheCopy)
{
    class BadClose : public FileOperations
    {
    public:
        int close(int fd) const override
        {
            FileOperations::close(fd);
            return failing(EDQUOT);
        }
    };
    expectSystemFailure(BadClose(), EDQUOT);
    expectMoveFails(BadClose(), urls);
}

TEST_F(ImportFaults, AByteFlippedOnTheWayToTheDiskIsCaughtByChecksumAndByEveryRunThatDeletes)
{
    class Flipping : public FileOperations
    {
    public:
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            if (size < chunk) {
                return FileOperations::write(fd, data, size, offset);
            }
            static_cast<char *>(const_cast<void *>(data))[size / 2] ^= 1;
            const ssize_t count = FileOperations::write(fd, data, size, offset);
            static_cast<char *>(const_cast<void *>(data))[size / 2] ^= 1;
            return count;
        }
    };
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, Flipping()),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    EXPECT_THAT(namesBeneath(root), IsEmpty()) << "the bad copy is gone";
    EXPECT_EQ(copyByBin(clips, root, VerifyLevel::checksum, Flipping()),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    expectMoveFails(Flipping(), {urls[0]}, VerifyLevel::sizeOnly);
    expectMoveFails(Flipping(), {urls[0]}, VerifyLevel::checksum);
}

TEST_F(ImportFaults, AWrongByteInOneReadingOfTheSourceIsCaughtByChecksumAndByEveryRunThatDeletes)
{
    for (const int reading : {1, 2}) {
        SCOPED_TRACE(reading);
        EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, faultInReading(reading, flipABit)),
                  tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
        EXPECT_THAT(namesBeneath(root), IsEmpty()) << "the bad copy is gone";
        EXPECT_EQ(copyByBin(clips, root, VerifyLevel::checksum, faultInReading(reading, flipABit)),
                  tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
        expectMoveFails(faultInReading(reading, flipABit), {urls[0]}, VerifyLevel::sizeOnly);
        expectMoveFails(faultInReading(reading, flipABit), {urls[0]}, VerifyLevel::checksum);
        fs::remove_all(root);
    }
}

TEST_F(ImportFaults, AByteThatTheMediumGivesBackWrongIsCaught)
{
    const FaultyReading files(".partial", flipABit);
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::checksum, files),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    expectMoveFails(files, {urls[0]});
}

TEST_F(ImportFaults, ASourceThatVanishesWhileItIsReadIsMissing)
{
    const FaultyReading files("large.mov", [&](void *, ssize_t count) {
        fs::remove(folder / "card/large.mov");
        return count;
    });
    EXPECT_EQ(copyFiles(urls, root, VerifyLevel::sizeOnly, files), tl::unexpected(ImportError{SourceMissing{urls[0]}}));
    EXPECT_THAT(namesBeneath(root), IsEmpty());
}

TEST_F(ImportFaults, ASourceThatGrowsWhileItIsReadIsNotClean)
{
    const FaultyReading files("large.mov", [&](void *, ssize_t count) {
        fs::resize_file(folder / "card/large.mov", 9 * chunk);
        return count;
    });
    EXPECT_EQ(moveByBin(clips, root, VerifyLevel::sizeOnly, files),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    EXPECT_THAT(namesBeneath(root), ElementsAre("Pool/small.mov"));
    EXPECT_THAT(namesBeneath(folder / "card"), ElementsAre("large.mov", "small.mov"));
}

TEST_F(ImportFaults, ASourceThatShrinksWhileItIsReadIsNotClean)
{
    const FaultyReading files("large.mov", [&](void *, ssize_t count) {
        fs::resize_file(folder / "card/large.mov", 2 * chunk);
        return count;
    });
    EXPECT_EQ(moveByBin(clips, root, VerifyLevel::sizeOnly, files),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    EXPECT_THAT(namesBeneath(folder / "card"), ElementsAre("large.mov", "small.mov"));
}

TEST_F(ImportFaults, ASourceRewrittenUnderItsOldSizeAndTimeIsNotClean)
{
    const fs::path source = folder / "card/large.mov";
    const FaultyReading files("large.mov", [&](void *, ssize_t count) {
        struct stat status
        {};
        EXPECT_EQ(::stat(source.c_str(), &status), 0);
        writeContent(source, footage(3, large.size()));
        const std::array times{status.st_atim, status.st_mtim};
        EXPECT_EQ(::utimensat(AT_FDCWD, source.c_str(), times.data(), 0), 0);
        return count;
    });
    EXPECT_EQ(moveByBin(clips, root, VerifyLevel::sizeOnly, files),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    EXPECT_EQ(contentOf(source), footage(3, large.size()));
    EXPECT_THAT(namesBeneath(root), ElementsAre("Pool/small.mov"));
}

TEST_F(ImportFaults, ASourceThatIsGoneByItselfBeforeItWouldBeDeletedIsNoFailure)
{
    const auto remove = [&](int done, int) {
        if (done == 2) {
            fs::remove(folder / "card/large.mov");
        }
    };
    EXPECT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, remove}));
    expectMovedWhole();
}

TEST_F(ImportFaults, ASourceExchangedAfterItsCopyIsNotDeleted)
{
    const auto exchange = [&](int done, int) {
        if (done == 1) {
            fs::rename(folder.write("card/new.mov", "another take"), folder / "card/large.mov");
        }
    };
    EXPECT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, exchange}));
    EXPECT_THAT(filesBeneath(folder / "card"), ElementsAre(Pair("large.mov", "another take")));
    EXPECT_EQ(contentOf(root / "Kitchen/large.mov"), large);
}

namespace {

// A card's file system: what a path leads to has another number once `renumber` was called, and the time of a change is
// that of the content, of which a test says that it stays.
class Renumbering : public FileOperations
{
public:
    void renumber() { ++m_offset; }
    int lstat(const char *path, struct stat *status) const override
    {
        const int result = FileOperations::lstat(path, status);
        status->st_ino += m_offset;
        status->st_mtim = status->st_ctim = {};
        return result;
    }

private:
    ino_t m_offset = 0;
};

} // namespace

TEST_F(ImportFaults, AMoveRemovesSourcesThatTheFileSystemRenumberedMeanwhile)
{
    Renumbering files;
    const auto renumber = [&](int, int) { files.renumber(); };
    ASSERT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, renumber}, files));
    expectMovedWhole();
}

TEST_F(ImportFaults, ARenumberedSourceStaysWhenItsBytesAreNoLongerThoseOfItsCopy)
{
    Renumbering files;
    const std::string other = footage(3, large.size());
    const auto exchange = [&](int done, int) {
        if (done == 1) {
            files.renumber();
            writeContent(folder / "card/large.mov", other);
        }
    };
    EXPECT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, exchange}, files));
    EXPECT_EQ(filesBeneath(folder / "card"), (std::map<std::string, std::string>{{"large.mov", other}}));
    EXPECT_EQ(contentOf(root / "Kitchen/large.mov"), large);
}

TEST_F(ImportFaults, ARenumberedSourceStaysWhenItOrItsCopyCannotBeReadAgain)
{
    for (const std::string unreadable : {"card/large.mov", "Kitchen/large.mov"}) {
        SCOPED_TRACE(unreadable);
        class Unreadable : public Renumbering
        {
        public:
            explicit Unreadable(std::string end) : m_end(std::move(end)) {}
            void fail() { m_failing = true; }
            ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
            {
                return m_failing && pathOf(fd).ends_with(m_end) ? failing(EIO)
                                                                : FileOperations::read(fd, data, size, offset);
            }

        private:
            std::string m_end;
            std::atomic<bool> m_failing = false;
        };
        Unreadable files(unreadable);
        const auto renumber = [&](int done, int) {
            if (done == 2) {
                files.renumber();
                files.fail();
            }
        };
        fs::remove_all(root);
        folder.write("card/small.mov", small);
        EXPECT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, renumber}, files));
        EXPECT_EQ(filesBeneath(folder / "card"), (std::map<std::string, std::string>{{"large.mov", large}}));
    }
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

TEST_F(ImportFaults, ADestinationFolderThatBecomesAFileDuringTheRunDeletesNothing)
{
    const auto exchange = [&](int done, int) {
        if (done == 1) {
            fs::rename(root / "Kitchen", folder / "moved away");
            writeContent(root / "Kitchen", "a file");
        }
    };
    EXPECT_EQ(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, exchange}),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    expectSourcesWhole();
}

TEST_F(ImportFaults, ACopyThatSomebodyRemovesBeforeTheEndKeepsItsSource)
{
    const auto remove = [&](int done, int) {
        if (done == 1) {
            fs::remove(root / "Kitchen/large.mov");
        }
    };
    EXPECT_EQ(MediaImporter::organizeByBin(clips, FileUrl(root), true, {VerifyLevel::sizeOnly, remove}),
              tl::unexpected(ImportError{VerificationFailed{{urls[0]}}}));
    expectSourcesWhole();
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
