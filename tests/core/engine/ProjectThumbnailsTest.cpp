// The thumbnails of sorted shoots that are opened again.
#include "tests/core/engine/ProjectsFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

using ProjectThumbnailsTest = ProjectsTest;

TEST_F(ProjectThumbnailsTest, ThumbnailsComeInGroupsOfFourAndAResetStopsThemBetweenGroups)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
    }
    Gate gate;
    std::atomic<int> sampled = 0;
    auto parts = seams();
    parts.sampleFrames = [&](const MediaClip &clip, int, double) {
        ++sampled;
        gate.pass();
        return sample(clip);
    };
    {
        SortEngine engine(parts, 8);
        engine.openProject(id);
        for (int i = 0; i < 4; ++i) {
            gate.awaitArrival();
        }
        EXPECT_EQ(sampled, 4);
        engine.reset();
        gate.open(6);
    }
    EXPECT_EQ(sampled, 4);
}

TEST_F(ProjectThumbnailsTest, AnEditWhileThumbnailsLoadStays)
{
    makeClips({"pool 1"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
    }
    Gate gate;
    auto parts = seams();
    parts.sampleFrames = [&](const MediaClip &clip, int, double) {
        gate.pass();
        return sample(clip);
    };
    SortEngine engine(parts);
    engine.openProject(id);
    gate.awaitArrival();
    engine.reassign(engine.clips().front()->id, u"Garage"_s);
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    EXPECT_EQ(engine.clips().front()->primaryBin, u"Garage"_s);
    EXPECT_EQ(saved()->clips.front().primaryBin, u"Garage"_s);
}

TEST_F(ProjectThumbnailsTest, ACopyThatInterruptsTheThumbnailsLetsThemGoOnAtItsEnd)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6", "g 7", "h 8", "i 9"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
    }
    for (const bool fails : {false, true}) {
        Gate gate;
        std::atomic<bool> isHeld = true;
        auto parts = seams();
        parts.sampleFrames = [&](const MediaClip &clip, int, double) {
            if (isHeld) {
                gate.pass();
            }
            return sample(clip);
        };
        parts.organizeByBin = [&](const auto &...) -> OrganizeAnswer {
            isHeld = false;
            gate.open(9);
            return fails ? OrganizeAnswer(tl::make_unexpected(CopyFailure{u"no"_s})) : OrganizeAnswer();
        };
        SortEngine engine(parts);
        engine.setOptions({.fileHandling = FileHandling::copy});
        engine.openProject(id);
        gate.awaitArrival();
        engine.exportEvent();
        ASSERT_TRUE(reaches(engine, fails ? StageKind::failed : StageKind::done));
        EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); })) << fails;
    }
}
