// Tasks and their landings, without an engine.
#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <QtCore/QThread>

#include "core/base/TaskRunner.h"
#include "tests/support/Gate.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Makes every change that has been posted so far.
void makePostedChanges()
{
    QCoreApplication::processEvents();
}

} // namespace

TEST(TaskRunner, LandingsComeOnTheOwnersThreadInTheOrderOfTheCalls)
{
    const auto owner = std::this_thread::get_id();
    std::thread::id worker;
    std::vector<int> landed;
    TaskRunner tasks({});
    tasks.start([&](const auto &run) {
        worker = std::this_thread::get_id();
        for (int i = 1; i <= 3; ++i) {
            tasks.land(run, [&, i] {
                EXPECT_EQ(std::this_thread::get_id(), owner);
                landed.push_back(i);
            });
        }
    });
    ASSERT_TRUE(waitUntil([&] { return landed.size() == 3; }));
    EXPECT_THAT(landed, ElementsAre(1, 2, 3));
    EXPECT_NE(worker, owner);
}

TEST(TaskRunner, ACancelledTaskIsAskedToStopAndLandsNothing)
{
    Gate gate;
    std::vector<int> landed;
    std::atomic<bool> wasAsked = false;
    bool isThrough = false;
    TaskRunner tasks({});
    tasks.start([&](const auto &run) {
        tasks.land(run, [&] { landed.push_back(1); });
        gate.pass();
        wasAsked = run.isStopped();
        tasks.land(run, [&] { landed.push_back(2); });
        tasks.post([&] { isThrough = true; });
    });
    gate.awaitArrival();
    landed.clear(); // the first may have come while the arrival was awaited
    tasks.cancel();
    gate.open();
    ASSERT_TRUE(waitUntil([&] { return isThrough; })) << "posted changes come in any case";
    EXPECT_TRUE(wasAsked);
    EXPECT_THAT(landed, IsEmpty());
}

TEST(TaskRunner, ALandingThatIsUnderWayWhenItsTaskIsCancelledIsDropped)
{
    std::counting_semaphore<> handedOver{0};
    bool hasLanded = false;
    TaskRunner tasks({});
    tasks.start([&](const auto &run) {
        tasks.land(run, [&] { hasLanded = true; });
        handedOver.release();
    });
    handedOver.acquire(); // without the event loop, so nothing lands meanwhile
    tasks.cancel();
    makePostedChanges();
    EXPECT_FALSE(hasLanded);
}

TEST(TaskRunner, ATaskThatIsStartedAfterACancelLandsBesideTheOneThatIsStillEnding)
{
    Gate gate;
    std::vector<int> landed;
    TaskRunner tasks({});
    tasks.start([&](const auto &run) {
        gate.pass();
        tasks.land(run, [&] { landed.push_back(1); });
    });
    gate.awaitArrival();
    tasks.cancel();
    tasks.start([&](const auto &run) { tasks.land(run, [&] { landed.push_back(2); }); });
    ASSERT_TRUE(waitUntil([&] { return !landed.empty(); }));
    gate.open();
    EXPECT_THAT(landed, ElementsAre(2));
}

TEST(TaskRunner, TheNextStepOfACancelledRunIsStoppedToo)
{
    std::optional<bool> wasStopped;
    TaskRunner tasks({});
    tasks.start([&](const auto &run) {
        tasks.post([&, run] {
            tasks.cancel();
            tasks.resume(
                run, [&](const auto &same) { tasks.post([&, stopped = same.isStopped()] { wasStopped = stopped; }); });
        });
    });
    ASSERT_TRUE(waitUntil([&] { return wasStopped.has_value(); }));
    EXPECT_TRUE(*wasStopped) << "a stop is never taken back";
}

TEST(TaskRunner, ItsEndStopsTheTasksWaitsForThemAndDropsTheirChanges)
{
    std::atomic<bool> hasEnded = false;
    bool isChanged = false;
    {
        Gate gate;
        TaskRunner tasks({});
        tasks.start([&](const auto &run) {
            gate.pass();
            while (!run.isStopped()) {
                std::this_thread::yield();
            }
            tasks.land(run, [&] { isChanged = true; });
            tasks.post([&] { isChanged = true; });
            hasEnded = true;
        });
        gate.awaitArrival();
        gate.open();
    }
    EXPECT_TRUE(hasEnded);
    makePostedChanges();
    EXPECT_FALSE(isChanged);
}

TEST(TaskRunner, ItsEndWaitsForTheTasksBeforeTheThreadsOfTheirItemsGo)
{
    std::mutex mutex;
    std::vector<std::string> gone;
    const auto reportEndOfThread = [&](const char *user) {
        QObject::connect(QThread::currentThread(), &QThread::finished, [&, user] {
            const std::lock_guard lock(mutex);
            gone.emplace_back(user);
        });
    };
    {
        Gate gate;
        TaskRunner tasks({});
        tasks.start([&](const auto &run) {
            reportEndOfThread("task");
            tasks.forEach(run, 1, [&](std::size_t) {
                reportEndOfThread("item");
                gate.pass();
                while (!run.isStopped()) {
                    std::this_thread::yield();
                }
            });
        });
        gate.awaitArrival();
        gate.open();
    }
    EXPECT_THAT(gone, ElementsAre("task", "item")) << "a task may have items until its end";
}

TEST(TaskRunner, TasksBeyondTheWidthWaitForAThread)
{
    Gate gate;
    std::vector<int> begun;
    std::atomic<int> inWork = 0;
    TaskRunner tasks({.tasks = 1});
    for (int i = 1; i <= 2; ++i) {
        tasks.start([&, i](const auto &run) {
            EXPECT_EQ(++inWork, 1);
            tasks.land(run, [&, i] { begun.push_back(i); });
            gate.pass();
            --inWork;
        });
    }
    gate.awaitArrival();
    gate.open(2);
    ASSERT_TRUE(waitUntil([&] { return begun.size() == 2; }));
    EXPECT_THAT(begun, ElementsAre(1, 2));
}

TEST(TaskRunner, WorkIsDoneOnceForEachItemByAtMostTheWidth)
{
    std::array<std::atomic<int>, 40> calls{};
    std::atomic<int> inWork = 0;
    std::atomic<int> most = 0;
    bool isThrough = false;
    TaskRunner tasks({.items = 3});
    tasks.start([&](const auto &run) {
        tasks.forEach(run, calls.size(), [&](std::size_t i) {
            const int now = ++inWork;
            for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
            }
            std::this_thread::yield();
            ++calls[i];
            --inWork;
        });
        tasks.land(run, [&] { isThrough = true; });
    });
    ASSERT_TRUE(waitUntil([&] { return isThrough; }));
    EXPECT_TRUE(std::ranges::all_of(calls, [](const auto &number) { return number == 1; }));
    EXPECT_LE(most, 3);
}

TEST(TaskRunner, ItemsThatHaveNotBegunWhenTheRunIsStoppedAreLeftOut)
{
    Gate gate;
    std::atomic<int> calls = 0;
    bool isThrough = false;
    TaskRunner tasks({.items = 1});
    tasks.start([&](const auto &run) {
        tasks.forEach(run, 5, [&](std::size_t) {
            ++calls;
            gate.pass();
        });
        tasks.post([&] { isThrough = true; });
    });
    gate.awaitArrival();
    tasks.cancel();
    gate.open(5);
    ASSERT_TRUE(waitUntil([&] { return isThrough; }));
    EXPECT_EQ(calls, 1);
}

TEST(CountScope, CountsDownBehindWhatItsTaskHasPosted)
{
    int count = 0;
    std::vector<int> countWhenPosted;
    TaskRunner tasks({});
    const auto add = [&](int change) { count += change; };
    tasks.start([&, scope = std::make_shared<CountScope>(tasks, add)](const auto &) {
        tasks.post([&] { countWhenPosted.push_back(count); });
    });
    EXPECT_EQ(count, 1) << "before the task has begun";
    ASSERT_TRUE(waitUntil([&] { return count == 0; }));
    EXPECT_THAT(countWhenPosted, ElementsAre(1));
}

TEST(CountScope, CountsDownAfterAnExceptionAndAfterAStop)
{
    Gate gate;
    int count = 0;
    TaskRunner tasks({});
    const auto add = [&](int change) { count += change; };
    tasks.start([&, scope = std::make_shared<CountScope>(tasks, add)](const auto &) mutable {
        try {
            const auto inner = std::move(scope);
            throw std::runtime_error("the disk is gone");
        } catch (const std::runtime_error &) { // NOLINT(bugprone-empty-catch): the scope is all that matters here
        }
    });
    tasks.start([&, scope = std::make_shared<CountScope>(tasks, add)](const auto &run) {
        gate.pass();
        if (run.isStopped()) {
            return;
        }
        ADD_FAILURE() << "the task wasn't stopped";
    });
    EXPECT_EQ(count, 2);
    gate.awaitArrival();
    tasks.cancel();
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return count == 0; }));
}
