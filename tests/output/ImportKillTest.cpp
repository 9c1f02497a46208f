// A process that moves footage or copies a card is killed, at any point and without warning. Every byte of every source
// must then still be whole somewhere, nothing under a final name may be partial, and the next run must leave nothing of
// the dead one.
#include <atomic>
#include <chrono>
#include <csignal>
#include <random>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/copies/UnfinishedCopies.h"
#include "output/PlacesInBin.h"
#include "tests/output/Footage.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

// Dies in front of the nth call that changes or reads a file.
class DyingOperations : public FileOperations
{
public:
    explicit DyingOperations(int calls) : m_left(calls) {}

    int open(int folder, const char *path, int flags, mode_t mode) const override
    {
        count();
        return FileOperations::open(folder, path, flags, mode);
    }
    ssize_t read(int fd, void *data, std::size_t size, off_t offset) const override
    {
        count();
        return FileOperations::read(fd, data, size, offset);
    }
    ssize_t write(int fd, const void *data, std::size_t size, off_t offset) const override
    {
        count();
        return FileOperations::write(fd, data, size, offset);
    }
    int makeFolder(const char *path, mode_t mode) const override
    {
        count();
        return FileOperations::makeFolder(path, mode);
    }
    int clone(int destination, int source) const override
    {
        count();
        return FileOperations::clone(destination, source);
    }
    int truncate(int fd, off_t size) const override
    {
        count();
        return FileOperations::truncate(fd, size);
    }
    int chmod(int fd, mode_t mode) const override
    {
        count();
        return FileOperations::chmod(fd, mode);
    }
    int sync(int fd) const override
    {
        count();
        return FileOperations::sync(fd);
    }
    int close(int fd) const override
    {
        count();
        return FileOperations::close(fd);
    }
    int renameWithoutClobbering(int folder, const char *from, const char *to) const override
    {
        count();
        return FileOperations::renameWithoutClobbering(folder, from, to);
    }
    int rename(int folder, const char *from, const char *to) const override
    {
        count();
        return FileOperations::rename(folder, from, to);
    }
    int remove(int folder, const char *name) const override
    {
        count();
        return FileOperations::remove(folder, name);
    }

private:
    void count() const
    {
        if (m_left-- == 0) {
            ::raise(SIGKILL);
        }
    }
    mutable std::atomic<int> m_left;
};

// Returns whether a child has ended, and leaves it to be waited for.
bool isOver(pid_t process)
{
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}

enum class Run { move, card };

class ImportKill : public testing::TestWithParam<Run>
{
protected:
    ImportKill()
    {
        for (const std::size_t size :
             {std::size_t(0), std::size_t(1000), std::size_t(300'000), std::size_t(70'000), std::size_t(4'200'001)}) {
            contents.push_back(footage(static_cast<unsigned>(size), size));
        }
    }

    // The sources as they were, and nothing at the destination.
    void layOut() const
    {
        fs::remove_all(folder / "root");
        for (std::size_t i = 0; i < contents.size(); ++i) {
            folder.write("card/" + std::to_string(i) + ".mov", contents[i]);
        }
        // A file with a hole at its end is given its length in a step of its own.
        fs::resize_file(folder / "card/1.mov", holedSize);
    }

    std::string content(std::size_t i) const
    {
        std::string content = contents[i];
        content.resize(i == 1 ? holedSize : content.size());
        return content;
    }

    bool isContent(const std::string &bytes) const
    {
        for (std::size_t i = 0; i < contents.size(); ++i) {
            if (bytes == content(i)) {
                return true;
            }
        }
        return false;
    }

    // Moves what is still at the source, or copies it into a folder of the day as a card's.
    bool import(const fs::path &cardFolder, const FileOperations &files = FileOperations::system()) const
    {
        std::vector<FileUrl> urls;
        std::vector<ClipToOrganize> clips;
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const fs::path source = folder / "card" / (std::to_string(i) + ".mov");
            if (fs::exists(source)) {
                urls.emplace_back(source);
                clips.push_back(clipIn(source, i % 2 == 0 ? u"Kitchen"_s : u"Pool"_s));
            }
        }
        return GetParam() == Run::move
                   ? moveByBin(clips, folder / "root", VerifyLevel::sizeOnly, files).has_value()
                   : copyFiles(urls, folder / "root" / cardFolder, VerifyLevel::checksum, files).has_value();
    }

    // Imports in a process of its own. True if it came to its end.
    template <typename Kill>
    bool importAndKill(const FileOperations &files, const Kill &kill) const
    {
        const pid_t process = ::fork();
        if (process == 0) {
            ::_exit(import("CARD", files) ? 0 : 1);
        }
        kill(process);
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        return WIFEXITED(status);
    }

    void expectNothingLost() const
    {
        std::multiset<std::string> copies;
        if (fs::exists(folder / "root")) {
            for (const auto &[name, bytes] : filesBeneath(folder / "root")) {
                if (!name.ends_with(".partial")) {
                    EXPECT_TRUE(isContent(bytes)) << name << " is partial";
                    copies.insert(bytes);
                }
            }
        }
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const fs::path source = folder / "card" / (std::to_string(i) + ".mov");
            const bool isAtSource = fs::exists(source) && bytesOf(source) == content(i);
            EXPECT_TRUE(isAtSource || (GetParam() == Run::move && copies.contains(content(i)))) << i;
        }
    }

    void expectTheNextRunPutsAllInOrder() const
    {
        EXPECT_TRUE(import("CARD (2)"));
        if (GetParam() == Run::move) {
            EXPECT_TRUE(fs::is_empty(folder / "card"));
        } else {
            EXPECT_EQ(filesBeneath(folder / "root/CARD (2)"), filesBeneath(folder / "card"));
        }
        for (const std::string &name : namesBeneath(folder / "root")) {
            EXPECT_FALSE(name.ends_with(".partial")) << name;
        }
        expectNothingLost();
    }

    static constexpr std::size_t holedSize = 400'000;
    TempFolder folder;
    std::vector<std::string> contents;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, ImportKill, testing::Values(Run::move, Run::card),
                         [](const auto &run) { return run.param == Run::move ? "Move" : "Card"; });

TEST_P(ImportKill, AtRandomMomentsNothingIsLostAndTheNextRunClearsUp)
{
    std::mt19937 random(20261121);
    long longest = 10'000'000; // microseconds; what a whole run takes is found out on the way
    const int kills = GetParam() == Run::move ? 200 : 100;
    int killed = 0;
    for (int run = 0; killed < kills && run < 1000; ++run) {
        SCOPED_TRACE(run);
        layOut();
        const auto start = Clock::now();
        const long moment = run == 0 ? longest : std::uniform_int_distribution<long>(0, longest)(random);
        const bool finished = importAndKill(FileOperations::system(), [&](pid_t process) {
            while (Clock::now() - start < std::chrono::microseconds(moment) && !isOver(process)) {
                ::usleep(static_cast<useconds_t>(std::min(moment, 500L)));
            }
            ::kill(process, SIGKILL);
        });
        if (finished) {
            longest = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
        }
        killed += finished ? 0 : 1;
        expectNothingLost();
        if (run % 4 == 0) {
            expectTheNextRunPutsAllInOrder();
        }
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_EQ(killed, kills);
}

TEST_P(ImportKill, InFrontOfEveryCallThatTouchesAFileNothingIsLostAndTheNextRunClearsUp)
{
    for (int calls = 0;; ++calls) {
        SCOPED_TRACE(calls);
        layOut();
        if (importAndKill(DyingOperations(calls), [](pid_t) {})) {
            EXPECT_GT(calls, 50);
            return;
        }
        expectNothingLost();
        if (calls % 3 == 0) {
            expectTheNextRunPutsAllInOrder();
        }
        if (HasFailure()) {
            return;
        }
    }
}

TEST(CardKill, TheNextStartMarksTheFolderAndNamesExactlyWhatIsNotInIt)
{
    const TempFolder folder;
    std::vector<FileUrl> urls;
    for (const char *const name : {"100/C1.MP4", "100/C2.MP4", "101/C1.MP4"}) {
        urls.emplace_back(folder.write(fs::path("card") / name, name));
    }
    for (const char *const name : {"100/C1M01.XML", "100/C1.THM", "101/C1.THM"}) {
        (void)folder.write(fs::path("card") / name, name);
    }
    const fs::path dated = folder / "Shoots/CARD";
    const fs::path marked = folder / "Shoots/CARD (unfinished)";
    const UnfinishedCopy whole{.name = u"CARD"_s, .folder = FileUrl(dated), .files = withSidecars(urls)};
    const UnfinishedCopies copies(CopyJournal(folder / "journal"), [](const FileUrl &file, const FileUrl &place) {
        return placesInBin(file, place, QString());
    });
    const auto isIn = [](const std::map<std::string, std::string> &files, const FileUrl &source) {
        return std::ranges::any_of(files, [&](const auto &file) {
            return !file.first.ends_with(".partial") && file.second == bytesOf(source.path());
        });
    };
    for (int calls = 0;; ++calls) {
        SCOPED_TRACE(calls);
        fs::remove_all(folder / "Shoots");
        fs::create_directory(folder / "Shoots");
        const pid_t process = ::fork();
        if (process == 0) {
            auto entry = copies.journal().begin(whole);
            const bool isCopied = copyFiles(urls, dated, VerifyLevel::checksum, DyingOperations(calls)).has_value();
            entry.close();
            ::_exit(isCopied ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(process, &status, 0), process);
        const auto left = copies.leftBehind();
        if (WIFEXITED(status)) {
            EXPECT_THAT(left, testing::IsEmpty());
            EXPECT_TRUE(fs::exists(dated));
            EXPECT_GT(calls, 50);
            return;
        }
        const bool isMade = fs::exists(dated) || fs::exists(marked);
        const auto files = isMade ? filesBeneath(fs::exists(marked) ? marked : dated) : decltype(filesBeneath(dated))();
        std::vector<ClipFiles> missing;
        for (const ClipFiles &clip : whole.files) {
            if (!isIn(files, clip.clip)) {
                missing.push_back({clip.clip, {}});
                continue;
            }
            for (const Sidecar &sidecar : clip.sidecars) {
                if (!isIn(files, sidecar.url)) {
                    missing.push_back({sidecar.url, {}});
                }
            }
        }
        if (!isMade || missing.empty()) {
            EXPECT_THAT(left, testing::IsEmpty());
        } else {
            ASSERT_THAT(left, testing::SizeIs(1));
            EXPECT_EQ(left[0].copy.files, missing);
            EXPECT_EQ(left[0].copy.folder, FileUrl(marked));
            EXPECT_TRUE(fs::exists(marked));
            CopyJournal::forget(left[0].file);
        }
        if (HasFailure()) {
            return;
        }
    }
}
