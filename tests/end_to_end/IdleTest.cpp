// The program does nothing while nobody uses it.
#include "tests/support/FfmpegMedia.h"
#include "tests/support/ProcessThreads.h"
#include "tests/support/StartedProgram.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// The threads that a time-out will wake, or that run; as text.
QStringList awake(const std::vector<ProcessThread> &threads)
{
    QStringList names;
    for (const ProcessThread &thread : threads) {
        if (!thread.sleepsForGood) {
            names.append(u"%1 (%2)"_s.arg(thread.name, thread.state));
        }
    }
    return names;
}

} // namespace

TEST(Idle, IsToldFromWaitingWithATimeOut)
{
    const auto settlesTo = [](const QStringList &command, bool sleepsForGood) {
        QProcess process;
        process.start(command.first(), command.mid(1));
        const bool does = waitUntil([&] {
            const std::vector<ProcessThread> threads = threadsOf(process.processId());
            return threads.size() == 1 && threads.front().name == command.first() && threads.front().switches > 0 &&
                   threads.front().sleepsForGood == sleepsForGood;
        });
        process.kill();
        process.waitForFinished();
        return does;
    };
    EXPECT_TRUE(settlesTo({u"cat"_s}, true)); // for what it never gets to read
    EXPECT_TRUE(settlesTo({u"sleep"_s, u"1000"_s}, false));
}

TEST(Idle, ALauncherInBoringModeWaitsForNoTimer)
{
    StartedProgram program(QStringLiteral(LARKSPAN_PROGRAM), "[General]\nlkBoringMode=true\n");
    ASSERT_TRUE(program.showsItsWindow());
    ASSERT_TRUE(program.leavesItsIntro());
    // Caches that Qt drops half a minute after their last use are the last to go.
    constexpr std::chrono::minutes longEnough(3);
    constexpr int looks = 50;
    int quietLooks = 0;
    qint64 switches = -1;
    QStringList names;
    EXPECT_TRUE(waitUntil(
        [&] {
            const std::vector<ProcessThread> threads = threadsOf(program.process().processId());
            names = awake(threads);
            const bool isQuiet = !threads.empty() && names.isEmpty();
            const qint64 before = std::exchange(switches, switchesOf(threads));
            quietLooks = isQuiet && switches == before ? quietLooks + 1 : 0;
            return quietLooks == looks;
        },
        longEnough))
        << names.join(u'\n').toStdString();
}

TEST(Idle, ALauncherHasLoadedNothingThatReadsPlaysOrRecognisesClips)
{
    StartedProgram program(QStringLiteral(LARKSPAN_PROGRAM));
    ASSERT_TRUE(program.showsItsWindow());
    ASSERT_TRUE(program.leavesItsIntro());
    const std::string mapped = bytesOf("/proc/" + std::to_string(program.process().processId()) + "/maps");
    EXPECT_THAT(mapped, testing::HasSubstr("libQt6Quick.so"));
    EXPECT_THAT(mapped, testing::Not(testing::HasSubstr("libavcodec.so")));
    EXPECT_THAT(mapped, testing::Not(testing::HasSubstr("libmpv.so")));
    EXPECT_THAT(mapped, testing::Not(testing::HasSubstr("libonnxruntime.so")));
}
