// Destinations that fill up, fail, write something else, or are taken away, and that nothing is lost by it. The calls
// of the system are real but for the one that a test makes fail.
#include <atomic>

#include "tests/output/ImportFaults.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::IsEmpty;

namespace fs = std::filesystem;

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
