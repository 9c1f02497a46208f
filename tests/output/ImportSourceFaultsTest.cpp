// Sources that can't be read, read wrong, change, or go while they are copied, and that nothing is lost by it. The
// calls of the system are real but for the one that a test makes fail.
#include <atomic>

#include <fcntl.h>
#include <sys/stat.h>

#include "tests/output/ImportFaults.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace fs = std::filesystem;

namespace {

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
    EXPECT_EQ(bytesOf(source), footage(3, large.size()));
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
    EXPECT_EQ(bytesOf(root / "Kitchen/large.mov"), large);
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
    EXPECT_EQ(bytesOf(root / "Kitchen/large.mov"), large);
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
