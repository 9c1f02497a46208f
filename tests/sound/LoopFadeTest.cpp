// The loop, which fades in and out.
#include <limits>

#include <gmock/gmock.h>

#include "sound/SoundEngine.h"
#include "tests/sound/SilentDevice.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::FloatNear;
using testing::Pointwise;

namespace {

// The volumes that the loop goes through from now on until it reaches the given one.
std::vector<float> volumesUntil(SoundEngine &engine, float last)
{
    std::vector<float> volumes{engine.loopNode().volume()};
    EXPECT_TRUE(waitUntil([&] {
        if (engine.loopNode().volume() != volumes.back()) {
            volumes.push_back(engine.loopNode().volume());
        }
        return volumes.back() == last;
    }));
    return volumes;
}

std::vector<float> twentySteps(float start, float target)
{
    std::vector<float> volumes;
    for (int k = 1; k <= 20; ++k) {
        volumes.push_back(start + (target - start) * static_cast<float>(k) / 20);
    }
    return volumes;
}

} // namespace

TEST(LoopFade, FadesTheLoopInTwentyStepsTheFirstAtOnce)
{
    SoundEngine engine(Resources);
    int completions = 0;
    engine.loopNode().setVolume(0.8F);
    engine.fadeLoop(0.2F, 0.2, [&] { ++completions; });
    EXPECT_FLOAT_EQ(engine.loopNode().volume(), 0.77F);
    EXPECT_EQ(completions, 0);
    EXPECT_THAT(volumesUntil(engine, 0.2F), Pointwise(FloatNear(1e-6F), twentySteps(0.8F, 0.2F)));
    EXPECT_EQ(completions, 1);
}

TEST(LoopFade, AFadesStepsShareItsTime)
{
    SoundEngine engine(Resources);
    EXPECT_EQ(engine.pendingFadeStep(), std::chrono::milliseconds(0));
    engine.fadeLoop(0, 2.0);
    EXPECT_EQ(engine.pendingFadeStep(), std::chrono::milliseconds(100));
    engine.loopNode().play();
    engine.setEnabled(false); // in 0.15 seconds
    EXPECT_EQ(engine.pendingFadeStep(), std::chrono::milliseconds(8));
}

TEST(LoopFade, FadeWithoutALengthIsDoneAtOnce)
{
    SoundEngine engine(Resources);
    for (const double duration : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        int completions = 0;
        engine.loopNode().setVolume(1);
        engine.fadeLoop(0.25F, duration, [&] { ++completions; });
        EXPECT_EQ(engine.loopNode().volume(), 0.25F);
        EXPECT_EQ(completions, 1);
        engine.fadeLoop(0.5F, duration);
        EXPECT_EQ(engine.loopNode().volume(), 0.5F);
    }
}

TEST(LoopFade, AnotherFadeEndsTheRunningOneWithoutItsCompletion)
{
    SoundEngine engine(Resources);
    std::string completed;
    engine.loopNode().setVolume(0);
    engine.fadeLoop(1, 0.1, [&] { completed += "first "; });
    engine.fadeLoop(0.5F, 0.1, [&] { completed += "second "; });
    EXPECT_THAT(volumesUntil(engine, 0.5F), Pointwise(FloatNear(1e-6F), twentySteps(0.05F, 0.5F)));
    engine.fadeLoop(1, 0.1, [&] { completed += "third "; });
    engine.fadeLoop(0, 0);
    EXPECT_FALSE(waitUntil([&] { return engine.loopNode().volume() != 0; }, std::chrono::seconds(1)));
    EXPECT_EQ(completed, "second ");
}

TEST(LoopFade, CompletionMayBeginAnotherFade)
{
    SoundEngine engine(Resources);
    engine.fadeLoop(0, 0.02, [&] { engine.fadeLoop(0.5F, 0.02); });
    EXPECT_TRUE(waitUntil([&] { return engine.loopNode().volume() == 0.5F; }));
}

TEST(LoopFade, SwitchedOffFadesAPlayingLoopOutAndStopsIt)
{
    SoundEngine engine(Resources);
    engine.loopNode().play();
    engine.loopNode().schedule(engine.buffer(longCue()));
    EXPECT_EQ(engine.loopNode().pendingBuffers(), 1);
    engine.setEnabled(false);
    EXPECT_TRUE(engine.loopNode().isPlaying());
    EXPECT_THAT(volumesUntil(engine, 0), Pointwise(FloatNear(1e-6F), twentySteps(1, 0)));
    EXPECT_FALSE(engine.loopNode().isPlaying());
    EXPECT_EQ(engine.loopNode().pendingBuffers(), 0);
}

TEST(LoopFade, SwitchedOffWhileALoopFadesStartsFromTheVolumeItHas)
{
    SoundEngine engine(Resources);
    bool completed = false;
    engine.loopNode().setVolume(0);
    engine.loopNode().play();
    engine.fadeLoop(1, 3600, [&] { completed = true; });
    engine.setEnabled(false);
    EXPECT_THAT(volumesUntil(engine, 0), Pointwise(FloatNear(1e-6F), twentySteps(0.05F, 0)));
    EXPECT_FALSE(engine.loopNode().isPlaying());
    EXPECT_FALSE(completed);
}

TEST(LoopFade, SwitchedOffLeavesALoopAloneThatDoesNotPlay)
{
    SoundEngine engine(Resources);
    engine.setEnabled(false);
    EXPECT_EQ(engine.loopNode().volume(), 1.0F);
}

TEST(LoopFade, GoneDuringAFadeCompletesNothing)
{
    bool completed = false;
    {
        SoundEngine engine(Resources);
        engine.fadeLoop(0, 0.02, [&] { completed = true; });
    }
    EXPECT_FALSE(waitUntil([&] { return completed; }, std::chrono::seconds(1)));
}
