#include "screens/stages/ScanTickScheduler.h"
#include "screens/stages/SortSounds.h"
#include "sound/SoundEngine.h"
#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

using SortSoundsTest = SortEngineTest;

} // namespace

TEST(ScanTickScheduler, WaitsLongestAtNoProgressAndTightensFastEarlyOn)
{
    EXPECT_DOUBLE_EQ(ScanTickScheduler::delayAfter(0), 0.42);
    EXPECT_NEAR(ScanTickScheduler::delayAfter(0.5), 0.20455, 1e-5);
    EXPECT_DOUBLE_EQ(ScanTickScheduler::delayAfter(1), 0.07);
}

TEST(ScanTickScheduler, HoldsAProgressBeyondTheEndsAtTheEnds)
{
    EXPECT_DOUBLE_EQ(ScanTickScheduler::delayAfter(-3), 0.42);
    EXPECT_DOUBLE_EQ(ScanTickScheduler::delayAfter(1.5), 0.07);
}

TEST(ScanTickScheduler, TicksAtOnceThenAgainAndAgain)
{
    int ticks = 0;
    ScanTickScheduler scheduler([&ticks] { ++ticks; });
    scheduler.start([] { return 1.0; });
    EXPECT_EQ(ticks, 1);
    EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 4; }));
}

TEST(ScanTickScheduler, ReadsTheProgressAnewAtEveryTick)
{
    int asked = 0;
    int ticks = 0;
    ScanTickScheduler scheduler([&ticks] { ++ticks; });
    scheduler.start([&asked] { return ++asked, 1.0; });
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(waitUntil([&ticks] { return ticks == 3; }));
    EXPECT_EQ(asked, 3);
}

TEST(ScanTickScheduler, StoppedTicksNoMoreAndStartedTwiceTicksInOneRow)
{
    int first = 0;
    int second = 0;
    ScanTickScheduler scheduler([] {});
    scheduler.start([&first] { return ++first, 1.0; });
    scheduler.start([&second] { return ++second, 1.0; });
    EXPECT_TRUE(waitUntil([&second] { return second == 3; }));
    EXPECT_EQ(first, 1);
    scheduler.stop();
    EXPECT_FALSE(scheduler.isRunning());
}

TEST(ScanTickScheduler, OfTheProgramSoundsAsATickAndAsNoCueOfThePool)
{
    const auto played = SoundEngine::shared().oneShotIndex();
    ScanTickScheduler scheduler;
    scheduler.start([] { return 0.0; });
    EXPECT_EQ(SoundEngine::shared().tickNode().volume(), 0.5F);
    EXPECT_EQ(SoundEngine::shared().oneShotIndex(), played);
}

TEST(ScanTickScheduler, ThatIsGoneTicksNoMore)
{
    int ticks = 0;
    {
        ScanTickScheduler scheduler([&ticks] { ++ticks; });
        scheduler.start([] { return 1.0; });
    }
    int others = 0;
    ScanTickScheduler other([&others] { ++others; });
    other.start([] { return 1.0; });
    EXPECT_TRUE(waitUntil([&others] { return others == 3; }));
    EXPECT_EQ(ticks, 1);
}

TEST_F(SortSoundsTest, TheChordSoundsWhenASortEndsInResultsAndAtNoOtherTime)
{
    makeClips({"kitchen 1"});
    SortEngine engine(seams());
    SortSounds sounds;
    sounds.setEngine(&engine);
    const auto played = [before = SoundEngine::shared().oneShotIndex()] {
        return SoundEngine::shared().oneShotIndex() - before;
    };
    engine.sortFolder(shoot);
    EXPECT_EQ(played(), 0u);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(played(), 1u);
    engine.exportEvent();
    ASSERT_EQ(engine.stage().kind, StageKind::done);
    engine.backToResults();
    engine.reset();
    engine.openProject(projectID(shoot));
    ASSERT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_EQ(played(), 1u);
    engine.sortFolder(FileUrl(folder / "nothing here"));
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_EQ(played(), 1u);
}
