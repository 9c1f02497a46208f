// Single files are copied and compared. The system's calls are real, except where a test says otherwise.
#include <array>
#include <cstring>
#include <map>

#include <sys/stat.h>
#include <sys/xattr.h>

#include "tests/output/FileCopyFixture.h"
#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::Pair;

namespace fs = std::filesystem;

TEST_F(FileCopyTest, ADiskThatTakesNoByteAtAllFailsTheCopy)
{
    class Taking : public FileOperations
    {
    public:
        ssize_t write(int, const void *, std::size_t, off_t) const override
        {
            errno = EINTR; // left over from an earlier call
            return 0;
        }
    };
    EXPECT_EQ(outcomeOf(folder.write("small.mov", "film"), Taking()), "Input/output error");
    EXPECT_EQ(outcomeOf(folder.write("large.mov", footage(1, ChunkPipeline::chunkSize)), Taking()),
              "Input/output error");
}

TEST_F(FileCopyTest, ADiskThatRefusesWritesInBothModesFailsTheCopy)
{
    class Refusing : public FileOperations
    {
    public:
        ssize_t write(int, const void *, std::size_t, off_t) const override
        {
            errno = EINVAL;
            return -1;
        }
    };
    EXPECT_EQ(outcomeOf(folder.write("large.mov", footage(1, ChunkPipeline::chunkSize)), Refusing()),
              "Invalid argument");
}

TEST_F(FileCopyTest, ACopyThatIsShorterThanItsSourceIsNotClean)
{
    class Claiming : public FileOperations
    {
    public:
        ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
        {
            const ssize_t count = FileOperations::write(fd, data, size - 1, offset);
            return count < 0 ? count : count + 1;
        }
    };
    EXPECT_EQ(outcomeOf(folder.write("a.mov", "film"), Claiming()), "not clean");
    EXPECT_TRUE(fs::is_empty(folder / "copies"));
}

TEST_F(FileCopyTest, ACopyThatComesBackWithAnotherByteIsNotClean)
{
    class Flipping : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            const ssize_t count = FileOperations::read(fd, data, size, offset);
            if (count > 0 && isTemporaryFile(fd)) {
                *static_cast<char *>(data) ^= 1;
            }
            return count;
        }
    };
    EXPECT_EQ(outcomeOf(folder.write("a.mov", "film"), Flipping(), Comparison::bytes), "not clean");
    EXPECT_TRUE(fs::is_empty(folder / "copies"));
}

TEST_F(FileCopyTest, ASourceThatChangesMeanwhileIsNotCleanEvenWhereOnlySizesAreCompared)
{
    class Touching : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            const std::array times{timespec{.tv_sec = 1}, timespec{.tv_sec = 1}};
            ::futimens(fd, times.data());
            return FileOperations::read(fd, data, size, offset);
        }
    };
    EXPECT_EQ(outcomeOf(folder.write("a.mov", "film"), Touching(), Comparison::size), "not clean");
    EXPECT_TRUE(fs::is_empty(folder / "copies"));
}

TEST_F(FileCopyTest, EveryAttributeOfTheUserIsKeptAndNoneOfTheSystem)
{
    const fs::path source = folder.write("a.mov", "film");
    for (const auto &[name, value] :
         std::map<std::string, std::string>{{"user.a", "first"}, {"user.empty", ""}, {"user.b", "last"}}) {
        ASSERT_EQ(::setxattr(source.c_str(), name.c_str(), value.data(), value.size(), 0), 0);
    }
    // Only the superuser may set these.
    ::setxattr(source.c_str(), "trusted.larkspan", "t", 1, 0);
    ::setxattr(source.c_str(), "security.larkspan", "s", 1, 0);
    const auto answer = copy(source);
    ASSERT_TRUE(answer);
    std::map<std::string, std::string> kept;
    std::string names(1000, '\0');
    names.resize(static_cast<std::size_t>(::listxattr(answer->destination.c_str(), names.data(), names.size())));
    for (std::size_t i = 0; i < names.size(); i += std::strlen(&names[i]) + 1) {
        std::string value(100, '\0');
        value.resize(
            static_cast<std::size_t>(::getxattr(answer->destination.c_str(), &names[i], value.data(), value.size())));
        kept[&names[i]] = value;
    }
    EXPECT_THAT(kept, ElementsAre(Pair("user.a", "first"), Pair("user.b", "last"), Pair("user.empty", "")));
}

TEST_F(FileCopyTest, ACopyIsInPlaceWhileItsPathLeadsToAFileOfItsSizeOnItsDevice)
{
    const FileOperations files;
    const auto copied = copy(folder.write("a.mov", "film"));
    ASSERT_TRUE(copied);
    EXPECT_TRUE(copied->isInPlace(files));
    const auto isInPlace = [&](auto change) {
        FinishedCopy other = *copied;
        change(other);
        return other.isInPlace(files);
    };
    EXPECT_FALSE(isInPlace([](FinishedCopy &other) { ++other.size; }));
    EXPECT_FALSE(isInPlace([](FinishedCopy &other) { ++other.device; }));
    EXPECT_FALSE(isInPlace([](FinishedCopy &other) { other.destination += " 2"; }));
    fs::create_symlink(copied->destination, folder / "link");
    EXPECT_FALSE(isInPlace([&](FinishedCopy &other) {
        other.destination = folder / "link";
        other.size = static_cast<std::int64_t>(copied->destination.native().size()); // a link's own size
    }));
}

TEST_F(FileCopyTest, AnotherFileIsEqualToACopyOnlyWithTheSameBytesInBothPlaces)
{
    const FileOperations files;
    FileCopier copier(files);
    const fs::path source = folder.write("a.mov", "film");
    const auto copied = copy(source);
    ASSERT_TRUE(copied);
    EXPECT_TRUE(copier.isStillEqual(source, *copied));
    EXPECT_TRUE(copier.isStillEqual(folder.write("same.mov", "film"), *copied));
    EXPECT_FALSE(copier.isStillEqual(folder.write("other.mov", "FILM"), *copied));
    EXPECT_FALSE(copier.isStillEqual(folder.write("longer.mov", "film 2"), *copied));
    EXPECT_FALSE(copier.isStillEqual(folder / "missing.mov", *copied));
    FinishedCopy elsewhere = *copied;
    ++elsewhere.device;
    EXPECT_FALSE(copier.isStillEqual(source, elsewhere)) << "the path leads to another disk now";
    writeContent(copied->destination, "FILM");
    EXPECT_FALSE(copier.isStillEqual(source, *copied));
    writeContent(copied->destination, "film 2");
    EXPECT_FALSE(copier.isStillEqual(folder / "longer.mov", *copied)) << "the copy isn't what it was";
    fs::remove(copied->destination);
    EXPECT_FALSE(copier.isStillEqual(source, *copied));
}

TEST_F(FileCopyTest, AFileThatChangesWhileItIsComparedIsNotEqual)
{
    class Touching : public FileOperations
    {
    public:
        ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
        {
            const std::array times{timespec{.tv_sec = 1}, timespec{.tv_sec = 1}};
            ::futimens(fd, times.data());
            return FileOperations::read(fd, data, size, offset);
        }
    };
    const fs::path source = folder.write("a.mov", "film");
    const auto copied = copy(source);
    ASSERT_TRUE(copied);
    EXPECT_FALSE(FileCopier(Touching()).isStillEqual(source, *copied));
}
