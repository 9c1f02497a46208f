// The importer compares the size of a shoot with the room at its destination. The volume's figures are made up.
#include <limits>

#include <gmock/gmock.h>

#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

class Volume : public FileOperations
{
public:
    Volume(unsigned long blockSize, fsblkcnt_t freeBlocks) : m_blockSize(blockSize), m_freeBlocks(freeBlocks) {}
    int statvfs(const char *, struct statvfs *volume) const override
    {
        *volume = {};
        volume->f_frsize = m_blockSize;
        volume->f_blocks = 1;
        volume->f_bavail = m_freeBlocks;
        return 0;
    }

private:
    unsigned long m_blockSize; // bytes
    fsblkcnt_t m_freeBlocks;
};

MediaImporter::Copied tooLittle(std::int64_t needed, std::int64_t available)
{
    return tl::unexpected(ImportError{InsufficientSpace{needed, available}});
}

} // namespace

TEST(FreeSpace, AFileThatIsMissingCountsAsNothing)
{
    const TempFolder folder;
    const std::vector urls{FileUrl(folder / "missing.mov"), FileUrl(folder.write("a.mov", "film"))};
    EXPECT_EQ(copyFiles(urls, folder / "shoot", VerifyLevel::sizeOnly, Volume(1, 4)), tooLittle(4, 4));
}

TEST(FreeSpace, AVolumeWithBlocksOfNoSizeHasNoRoom)
{
    const TempFolder folder;
    EXPECT_EQ(copyFiles({}, folder / "shoot", VerifyLevel::sizeOnly, Volume(0, 100)), tooLittle(0, 0));
}

TEST(FreeSpace, MoreBytesThanANumberHoldsAreTheMostThatItHolds)
{
    const TempFolder folder(memoryFolder());
    std::vector<FileUrl> urls;
    for (const std::string name : {"a.mov", "b.mov", "c.mov"}) {
        urls.emplace_back(folder.write(name));
        std::error_code error;
        fs::resize_file(urls.back().path(), std::uintmax_t{most} / 2, error); // takes no room
        if (error) {
            GTEST_SKIP() << "no file can be so large here: " << error.message();
        }
    }
    constexpr fsblkcnt_t all = std::numeric_limits<fsblkcnt_t>::max();
    const auto answer = [&](const FileOperations &volume) {
        return copyFiles(urls, folder / "shoot", VerifyLevel::sizeOnly, volume);
    };
    EXPECT_EQ(answer(Volume(1, all)), tooLittle(most, most));
    EXPECT_EQ(answer(Volume(4096, all)), tooLittle(most, most - 4095));
}
