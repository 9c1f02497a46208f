// The number of clips that are processed at once, and the order in which they land.
#include <thread>

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

TEST_F(SortEngineTest, LeavesTwoCoresFreeAndHoldsTheWidthWithinTwoToSix)
{
    const auto widthOn = [this](int processors) { return SortEngine(seams(), processors).width(); };
    EXPECT_EQ(widthOn(1), 2);
    EXPECT_EQ(widthOn(2), 2);
    EXPECT_EQ(widthOn(4), 2);
    EXPECT_EQ(widthOn(5), 3);
    EXPECT_EQ(widthOn(8), 6);
    EXPECT_EQ(widthOn(10), 6);
}

TEST_F(SortEngineTest, WorksInBatchesOfTheWidthAndProgressMovesByBatch)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6", "g 7"});
    SortEngine engine(seams(), 5);
    ASSERT_EQ(engine.width(), 3);
    std::vector<int> progress;
    QObject::connect(&engine, &SortEngine::progressChanged, [&] {
        if (engine.done() > 0) {
            progress.push_back(engine.done());
            EXPECT_EQ(engine.clips().size(), static_cast<std::size_t>(engine.done()));
            EXPECT_EQ(engine.total(), 7);
        }
    });
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(progress, ElementsAre(3, 6, 7));
}

TEST_F(SortEngineTest, EachBatchIsAnnouncedAsItLands)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6", "g 7"});
    SortEngine engine(seams(), 5);
    std::vector<int> counts;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { counts.push_back(engine.clipCount()); });
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(counts, ElementsAre(0, 3, 6, 7, 7)) << "and once more at the end";
}

TEST_F(SortEngineTest, NoEmptyBatchIsAnnouncedAfterAFullOne)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6"});
    SortEngine engine(seams(), 5);
    std::vector<int> counts;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { counts.push_back(engine.clipCount()); });
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(counts, ElementsAre(0, 3, 6, 6));
}

TEST_F(SortEngineTest, NeverHasMoreClipsInWorkThanTheWidth)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6", "g 7", "h 8"});
    std::atomic<int> inWork = 0;
    std::atomic<int> most = 0;
    auto parts = seams();
    parts.probeClip = [&](const FileUrl &url) {
        const int now = ++inWork;
        for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
        }
        std::this_thread::yield();
        auto clip = probe(url);
        --inWork;
        return clip;
    };
    SortEngine engine(parts, 5);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_LE(most, 3);
}

TEST_F(SortEngineTest, ABatchIsABarrierThatItsSlowestClipHoldsUp)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6"});
    Gate slowest;
    std::atomic<int> begun = 0;
    auto parts = seams();
    parts.probeClip = [&](const FileUrl &url) {
        ++begun;
        if (url.baseName() == u"a 1"_s) {
            slowest.pass();
        }
        return probe(url);
    };
    SortEngine engine(parts, 5);
    ASSERT_EQ(engine.width(), 3);
    engine.sortFolder(shoot);
    slowest.awaitArrival();
    ASSERT_TRUE(waitUntil([&] { return begun == 3; }));
    EXPECT_FALSE(waitUntil([&] { return begun > 3; }, std::chrono::seconds(1))) << "two threads have nothing to do";
    slowest.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(begun, 6);
}

TEST_F(SortEngineTest, ClipsOfOneDateStandInFileOrderWhoeverIsThroughFirst)
{
    makeClips({"a 1", "b 1", "c 1", "d 1"});
    Gate gate;
    auto parts = seams();
    parts.probeClip = [&](const FileUrl &url) {
        if (url.baseName() == u"a 1"_s) {
            gate.pass();
        } else if (url.baseName() == u"b 1"_s) {
            gate.awaitArrival();
            gate.open();
        }
        return probe(url);
    };
    SortEngine engine(parts, 4);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"a 1"_s, u"b 1"_s, u"c 1"_s, u"d 1"_s));
}

TEST_F(SortEngineTest, TheLastAnnouncementOfASortShowsTheClipsByDate)
{
    makeClips({"kitchen 2", "pool 1"});
    SortEngine engine(seams());
    std::vector<QString> shown;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { shown = namesOf(engine.clips()); });
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(shown, ElementsAre(u"pool 1"_s, u"kitchen 2"_s));
}
