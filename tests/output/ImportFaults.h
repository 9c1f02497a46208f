#pragma once

#include <cerrno>
#include <functional>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/output/Footage.h"

namespace larkspan::test {

// Bytes of a file that the importer reads at a time.
inline constexpr std::size_t chunk = 4 * 1024 * 1024;

// Answers as a call of the system does that fails.
inline int failing(int error)
{
    errno = error;
    return -1;
}

inline bool isFolder(int fd)
{
    struct stat status
    {};
    return ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
}

inline std::string pathOf(int fd)
{
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd));
}

// A shoot of two clips, the larger of them in several chunks, and what must be true of it whatever happens.
class ImportFaults : public testing::Test
{
protected:
    TempFolder folder;
    const std::string small = footage(1, 1000);
    const std::string large = footage(2, 3 * chunk + 1234);
    const std::vector<ClipToOrganize> clips{clipIn(folder.write("card/large.mov", large), QStringLiteral("Kitchen")),
                                            clipIn(folder.write("card/small.mov", small), QStringLiteral("Pool"))};
    const std::vector<FileUrl> urls{clips[0].url, clips[1].url};
    const std::filesystem::path root = folder / "root";

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
        EXPECT_THAT(namesBeneath(root), testing::IsEmpty());
    }

    void expectSourcesWhole()
    {
        EXPECT_EQ(filesBeneath(folder / "card"),
                  (std::map<std::string, std::string>{{"large.mov", large}, {"small.mov", small}}));
    }

    void expectOnlyWholeCopies()
    {
        for (const auto &[name, content] :
             std::filesystem::exists(root) ? filesBeneath(root) : decltype(filesBeneath(root))()) {
            EXPECT_TRUE(content == large || content == small) << name;
        }
    }

    void expectMovedWhole()
    {
        EXPECT_THAT(namesBeneath(folder / "card"), testing::IsEmpty());
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

} // namespace larkspan::test
