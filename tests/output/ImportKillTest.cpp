// A process that moves footage is killed, at any point and without warning. Every byte of every source must then still
// be whole somewhere, nothing under a final name may be partial, and the next run must leave nothing of the dead one.
#include <atomic>
#include <chrono>
#include <csignal>
#include <random>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/output/Footage.h"

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

// Whether a child has come to its end, without taking note of it.
bool isOver(pid_t process)
{
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}

class ImportKill : public testing::Test
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
    }

    // Moves what is still at the source.
    bool move(const FileOperations &files = FileOperations::system()) const
    {
        std::vector<ClipToOrganize> clips;
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const fs::path source = folder / "card" / (std::to_string(i) + ".mov");
            if (fs::exists(source)) {
                clips.push_back(clipIn(source, i % 2 == 0 ? u"Kitchen"_s : u"Pool"_s));
            }
        }
        return moveByBin(clips, folder / "root", VerifyLevel::sizeOnly, files).has_value();
    }

    // Runs the move in a process of its own. True if it came to its end.
    template <typename Kill>
    bool moveAndKill(const FileOperations &files, const Kill &kill) const
    {
        const pid_t process = ::fork();
        if (process == 0) {
            ::_exit(move(files) ? 0 : 1);
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
            for (const auto &[name, content] : filesBeneath(folder / "root")) {
                if (!name.ends_with(".partial")) {
                    EXPECT_NE(std::ranges::find(contents, content), contents.end()) << name << " is partial";
                    copies.insert(content);
                }
            }
        }
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const fs::path source = folder / "card" / (std::to_string(i) + ".mov");
            EXPECT_TRUE((fs::exists(source) && contentOf(source) == contents[i]) || copies.contains(contents[i])) << i;
        }
    }

    void expectTheNextRunPutsAllInOrder() const
    {
        EXPECT_TRUE(move());
        EXPECT_TRUE(fs::is_empty(folder / "card"));
        for (const std::string &name : namesBeneath(folder / "root")) {
            EXPECT_FALSE(name.ends_with(".partial")) << name;
        }
        expectNothingLost();
    }

    TempFolder folder;
    std::vector<std::string> contents;
};

} // namespace

TEST_F(ImportKill, AtTwoHundredRandomMomentsNothingIsLostAndTheNextRunClearsUp)
{
    std::mt19937 random(20261121);
    long longest = 10'000'000; // microseconds; what a whole run takes is found out on the way
    int killed = 0;
    for (int run = 0; killed < 200 && run < 1000; ++run) {
        SCOPED_TRACE(run);
        layOut();
        const auto start = Clock::now();
        const long moment = run == 0 ? longest : std::uniform_int_distribution<long>(0, longest)(random);
        const bool finished = moveAndKill(FileOperations::system(), [&](pid_t process) {
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
    EXPECT_EQ(killed, 200);
}

TEST_F(ImportKill, InFrontOfEveryCallThatTouchesAFileNothingIsLostAndTheNextRunClearsUp)
{
    for (int calls = 0;; ++calls) {
        SCOPED_TRACE(calls);
        layOut();
        if (moveAndKill(DyingOperations(calls), [](pid_t) {})) {
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
