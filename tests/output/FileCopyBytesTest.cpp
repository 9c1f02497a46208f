// How the bytes of one file go to the medium and come back: past the page cache where that can be, and around holes.
#include <limits>

#include <fcntl.h>
#include <sys/uio.h>

#include "core/files/FileDescriptor.h"
#include "tests/output/FileCopyFixture.h"
#include "tests/output/Footage.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {

constexpr std::size_t chunkSize = ChunkPipeline::chunkSize;

bool isInDirectMode(int fd)
{
    return (::fcntl(fd, F_GETFL) & O_DIRECT) != 0;
}

struct Access
{
    bool isDirect = false;
    std::int64_t offset = 0;
    std::size_t size = 0;
    friend bool operator==(const Access &, const Access &) = default;
};

void PrintTo(const Access &access, std::ostream *out)
{
    *out << (access.isDirect ? "direct " : "cached ") << access.offset << '+' << access.size;
}

// Records how a copy is written and read back. Writes at most so many bytes at a time.
class Watching : public FileOperations
{
public:
    explicit Watching(std::size_t most = std::numeric_limits<std::size_t>::max()) : m_most(most) {}

    ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
    {
        m_writes.push_back({isInDirectMode(fd), offset, size});
        return FileOperations::write(fd, data, std::min(size, m_most), offset);
    }
    ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
    {
        if (isTemporaryFile(fd)) {
            m_readsBack.push_back({isInDirectMode(fd), offset, size});
        }
        return FileOperations::read(fd, data, size, offset);
    }

    std::vector<Access> takeWrites() { return std::exchange(m_writes, {}); }
    std::vector<Access> takeReadsBack() { return std::exchange(m_readsBack, {}); }

private:
    std::size_t m_most;
    mutable std::vector<Access> m_writes;    // one thread writes
    mutable std::vector<Access> m_readsBack; // and one reads back
};

class FileCopyBytesTest : public FileCopyTest
{
protected:
    // A file with 64 KB of each content, and 64 KB of nothing before, between and behind them.
    fs::path sparse(const std::vector<std::string> &blocks)
    {
        constexpr std::size_t blockSize = std::size_t{64} * 1024;
        const fs::path file = folder.write("card/sparse.mov");
        fs::resize_file(file, (2 * blocks.size() + 1) * blockSize);
        const int fd = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            EXPECT_EQ(::pwrite(fd, blocks[i].data(), blocks[i].size(), static_cast<off_t>((2 * i + 1) * blockSize)),
                      static_cast<ssize_t>(blocks[i].size()));
        }
        EXPECT_EQ(::close(fd), 0);
        return file;
    }

    bool canBeDirect() const
    {
        const FileDescriptor probe(::open(folder.write("probe").c_str(), O_RDWR | O_CLOEXEC));
        return enterDirectMode(probe.get());
    }
};

} // namespace

TEST_F(FileCopyBytesTest, ALargeFileIsWrittenPastThePageCacheInWholePagesAllButItsEnd)
{
    if (!canBeDirect()) {
        GTEST_SKIP() << "the temporary folder's file system has no direct mode";
    }
    Watching files;
    ASSERT_TRUE(copy(folder.write("1.mov", footage(1, 2 * chunkSize + 5000)), Comparison::size, files));
    EXPECT_THAT(files.takeWrites(),
                ElementsAre(Access{true, 0, chunkSize}, Access{true, chunkSize, chunkSize},
                            Access{true, 2 * chunkSize, 4096}, Access{false, 2 * chunkSize + 4096, 904}));
    ASSERT_TRUE(copy(folder.write("2.mov", footage(2, chunkSize)), Comparison::size, files));
    EXPECT_THAT(files.takeWrites(), ElementsAre(Access{true, 0, chunkSize}));
    ASSERT_TRUE(copy(folder.write("3.mov", footage(3, chunkSize - 1)), Comparison::size, files));
    EXPECT_THAT(files.takeWrites(), ElementsAre(Access{false, 0, chunkSize - 1}));
}

TEST_F(FileCopyBytesTest, AShortWriteThatEndsWithinAPageIsGoneOnWithThroughThePageCache)
{
    if (!canBeDirect()) {
        GTEST_SKIP() << "the temporary folder's file system has no direct mode";
    }
    Watching files(chunkSize - 512); // the disk's smallest piece
    const std::string content = footage(1, 2 * chunkSize);
    const auto answer = copy(folder.write("a.mov", content), Comparison::size, files);
    ASSERT_TRUE(answer);
    EXPECT_EQ(bytesOf(answer->destination), content);
    EXPECT_THAT(files.takeWrites(),
                ElementsAre(Access{true, 0, chunkSize}, Access{false, chunkSize - 512, 512},
                            Access{false, chunkSize, chunkSize}, Access{false, 2 * chunkSize - 512, 512}));
}

TEST_F(FileCopyBytesTest, ACopyOfAnySizeIsReadBackPastThePageCache)
{
    if (!canBeDirect()) {
        GTEST_SKIP() << "the temporary folder's file system has no direct mode";
    }
    for (const std::size_t size : {std::size_t{1000}, 2 * chunkSize + 5000}) {
        Watching files;
        ASSERT_TRUE(copy(folder.write("a.mov", footage(1, size)), Comparison::bytes, files));
        EXPECT_TRUE(files.takeReadsBack().at(0).isDirect);
    }
}

TEST_F(FileCopyBytesTest, WhereNothingCanBeReadPastThePageCacheItForgetsACopyBeforeThatIsReadBack)
{
    class NeverDirect : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            leaveDirectMode(fd);
            if (isTemporaryFile(fd)) {
                // Answers only from memory.
                const iovec piece{.iov_base = data, .iov_len = size};
                m_fromMemory.push_back(::preadv2(fd, &piece, 1, offset, RWF_NOWAIT) >= 0 ? 0 : errno);
            }
            return FileOperations::read(fd, data, size, offset);
        }
        mutable std::vector<int> m_fromMemory; // 0, or why not
    };
    const NeverDirect files;
    ASSERT_TRUE(copy(folder.write("a.mov", footage(1, 1000)), Comparison::bytes, files));
    ASSERT_FALSE(files.m_fromMemory.empty());
    if (files.m_fromMemory.front() == EOPNOTSUPP) {
        GTEST_SKIP() << "the temporary folder's file system can't tell what is in memory";
    }
    EXPECT_EQ(files.m_fromMemory.front(), EAGAIN);
}

TEST_F(FileCopyBytesTest, OnlyBlocksThatAreEmptyThroughoutBecomeHoles)
{
    constexpr std::size_t blockSize = std::size_t{64} * 1024;
    std::string alternating;
    for (std::size_t i = 0; i < blockSize / 2; ++i) {
        alternating += {'\0', '\1'};
    }
    const std::string onlyTheLastByte = std::string(blockSize - 1, '\0') + '\1';
    const std::string onlyTheFirstByte = '\1' + std::string(blockSize - 1, '\0');
    const fs::path source = sparse({alternating, onlyTheLastByte, onlyTheFirstByte, std::string(blockSize, '\1'),
                                    std::string(blockSize, '\xFF'), footage(1, blockSize)});
    Watching files;
    const auto answer = copy(source, Comparison::size, files);
    ASSERT_TRUE(answer);
    EXPECT_EQ(bytesOf(answer->destination), bytesOf(source));
    EXPECT_THAT(files.takeWrites(),
                ElementsAre(Access{false, 1 * blockSize, blockSize}, Access{false, 3 * blockSize, blockSize},
                            Access{false, 5 * blockSize, blockSize}, Access{false, 7 * blockSize, blockSize},
                            Access{false, 9 * blockSize, blockSize}, Access{false, 11 * blockSize, blockSize}));
}

TEST_F(FileCopyBytesTest, TheEndOfASparseFileIsWrittenUpToItsLastByte)
{
    const fs::path source = folder.write("card/a.mov");
    const std::size_t size = std::size_t{3} * 64 * 1024 + 10;
    fs::resize_file(source, size - 1);
    {
        const int fd = ::open(source.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
        ASSERT_EQ(::write(fd, "x", 1), 1);
        ASSERT_EQ(::close(fd), 0);
    }
    Watching files;
    const auto answer = copy(source, Comparison::size, files);
    ASSERT_TRUE(answer);
    EXPECT_EQ(bytesOf(answer->destination), bytesOf(source));
    EXPECT_THAT(files.takeWrites(), ElementsAre(Access{false, static_cast<std::int64_t>(size) - 10, 10}));
}

TEST_F(FileCopyBytesTest, ASparseFileThatCannotBeWrittenOrBroughtToItsLengthFails)
{
    class BadDisk : public FileOperations
    {
    public:
        explicit BadDisk(bool failsWriting) : m_failsWriting(failsWriting) {}
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            errno = EIO;
            return m_failsWriting ? -1 : FileOperations::write(fd, data, size, offset);
        }
        int truncate(int fd, off_t size) const override
        {
            errno = EFBIG;
            return m_failsWriting ? FileOperations::truncate(fd, size) : -1;
        }

    private:
        bool m_failsWriting;
    };
    const fs::path source = sparse({"film"});
    EXPECT_EQ(outcomeOf(source, BadDisk(true)), "Input/output error");
    EXPECT_EQ(outcomeOf(source, BadDisk(false)), "File too large");
}

TEST_F(FileCopyBytesTest, AFileWithoutHolesNeedsNotBeBroughtToItsLength)
{
    class NoTruncate : public FileOperations
    {
    public:
        int truncate(int, off_t) const override
        {
            errno = EPERM;
            return -1;
        }
    };
    EXPECT_EQ(outcomeOf(folder.write("a.mov", "film"), NoTruncate()), "copied");
}

TEST_F(FileCopyBytesTest, ADiskThatTakesOneByteAtATimeGetsThemAll)
{
    Watching files(1);
    const auto answer = copy(folder.write("a.mov", "film"), Comparison::size, files);
    ASSERT_TRUE(answer);
    EXPECT_EQ(bytesOf(answer->destination), "film");
}

TEST_F(FileCopyBytesTest, AFileWhoseBlocksCanBeSharedIsNotWritten)
{
    class Cloning : public Watching
    {
    public:
        int clone(int destination, int source) const override
        {
            return ::copy_file_range(source, nullptr, destination, nullptr, chunkSize, 0) > 0 ? 0 : -1;
        }
    };
    Cloning files;
    for (const std::string content : {"f", "film"}) {
        const auto answer = copy(folder.write("a.mov", content), Comparison::bytes, files);
        ASSERT_TRUE(answer);
        EXPECT_EQ(bytesOf(answer->destination), content);
    }
    EXPECT_THAT(files.takeWrites(), ElementsAre());
}
