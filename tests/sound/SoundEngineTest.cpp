#include <cstdlib>
#include <filesystem>
#include <limits>

#include <gmock/gmock.h>
#include <QtCore/QEventLoop>

#include "sound/SoundEngine.h"
#include "tests/sound/AllocationCount.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;
using testing::FloatNear;
using testing::Pointwise;

namespace {

// OpenAL's device that plays in real time to nobody. OpenAL reads this once, when the first device is opened.
const bool nullDevice = ::setenv("ALSOFT_DRIVERS", "null", 1) == 0;

const std::filesystem::path Resources = LARKSPAN_RESOURCES;

// Longer than any test waits, so that it still sounds when the test looks.
SoundCue longCue(double frequency = 440)
{
    return SoundCue::synthesized({.notes = {{.frequency = frequency, .release = 1}}, .duration = 120});
}

std::vector<int> pending(const SoundEngine &engine)
{
    std::vector<int> counts;
    for (const auto &node : engine.oneShotNodes()) {
        counts.push_back(node.pendingBuffers());
    }
    return counts;
}

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

void copyChime(const TempFolder &folder)
{
    std::filesystem::copy_file(Resources / "intro_chime.wav", folder / "intro_chime.wav");
}

} // namespace

TEST(SoundEngine, StartsAllNodesButTheLoop)
{
    ASSERT_TRUE(nullDevice);
    SoundEngine engine(Resources);
    EXPECT_TRUE(engine.isEnabled());
    EXPECT_EQ(engine.oneShotIndex(), 0U);
    for (const auto &node : engine.oneShotNodes()) {
        EXPECT_TRUE(node.isPlaying());
    }
    EXPECT_TRUE(engine.tickNode().isPlaying());
    EXPECT_FALSE(engine.loopNode().isPlaying());
}

TEST(SoundEngine, HasAllCuesReadyOnceItIsMade)
{
    const TempFolder folder;
    copyChime(folder);
    SoundEngine engine(folder.path());
    std::filesystem::remove(folder / "intro_chime.wav");
    EXPECT_TRUE(engine.buffer(SoundCue::introChime()));
    const auto before = allocationCount();
    const auto tick = engine.buffer(SoundCue::tick());
    const auto chord = engine.buffer(SoundCue::resultsChord());
    EXPECT_EQ(allocationCount(), before);
    ASSERT_TRUE(tick && chord);
    EXPECT_EQ(tick->frameCount(), 882U);
    EXPECT_EQ(chord->frameCount(), 26460U);
}

TEST(SoundEngine, SynthesisesEqualSpecsOnce)
{
    SoundEngine engine(Resources);
    const auto spec = std::get<SynthSpec>(longCue().source);
    auto other = spec;
    other.loopCrossfade = 0.1;
    EXPECT_EQ(engine.buffer(SoundCue::synthesized(spec)), engine.buffer(longCue()));
    EXPECT_NE(engine.buffer(SoundCue::synthesized(other)), engine.buffer(longCue()));
}

TEST(SoundEngine, LooksForAMissingFileAgainAndReadsItOnce)
{
    const TempFolder folder;
    SoundEngine engine(folder.path());
    EXPECT_FALSE(engine.buffer(SoundCue::introChime()));
    engine.play(SoundCue::introChime());
    EXPECT_EQ(engine.oneShotIndex(), 0U);

    copyChime(folder);
    const auto chime = engine.buffer(SoundCue::introChime());
    EXPECT_TRUE(chime);
    std::filesystem::remove(folder / "intro_chime.wav");
    EXPECT_EQ(engine.buffer(SoundCue::introChime()), chime);
    engine.play(SoundCue::introChime());
    EXPECT_EQ(engine.oneShotIndex(), 1U);
}

TEST(SoundEngine, DamagedChimeIsSilent)
{
    const TempFolder folder;
    folder.write("intro_chime.wav", "RIFF\x10\xff\xff\x7fWAVEfmt nonsense");
    SoundEngine engine(folder.path());
    engine.play(SoundCue::introChime());
    EXPECT_EQ(engine.oneShotIndex(), 0U);
    EXPECT_THAT(pending(engine), ElementsAre(0, 0, 0));
}

TEST(SoundEngine, CueWithoutALengthIsSilent)
{
    SoundEngine engine(Resources);
    engine.play(SoundCue::synthesized({}));
    engine.playTick(SoundCue::synthesized({}));
    EXPECT_THAT(pending(engine), ElementsAre(0, 0, 0));
    EXPECT_EQ(engine.tickNode().pendingBuffers(), 0);
}

TEST(SoundEngine, PlaysThreeCuesTogetherAndAFourthBehindTheFirst)
{
    SoundEngine engine(Resources);
    engine.play(longCue(440));
    engine.play(longCue(550));
    EXPECT_THAT(pending(engine), ElementsAre(1, 1, 0));
    engine.play(longCue(440));
    EXPECT_THAT(pending(engine), ElementsAre(1, 1, 1));
    engine.play(SoundCue::introChime());
    EXPECT_THAT(pending(engine), ElementsAre(2, 1, 1));
    engine.play(longCue(440));
    EXPECT_THAT(pending(engine), ElementsAre(2, 2, 1));
    EXPECT_EQ(engine.oneShotIndex(), 5U);
    EXPECT_EQ(engine.tickNode().pendingBuffers(), 0);
}

TEST(SoundEngine, PlaysTicksAtHalfVolumeOnTheirOwnNode)
{
    SoundEngine engine(Resources);
    engine.playTick(longCue());
    EXPECT_EQ(engine.tickNode().volume(), 0.5F);
    EXPECT_EQ(engine.tickNode().pendingBuffers(), 1);
    EXPECT_THAT(pending(engine), ElementsAre(0, 0, 0));
    EXPECT_EQ(engine.oneShotIndex(), 0U);
    for (const auto &node : engine.oneShotNodes()) {
        EXPECT_EQ(node.volume(), 1.0F);
    }
}

TEST(SoundEngine, PlaysANodeAgainAfterItHasRunDry)
{
    SoundEngine engine(Resources);
    const auto second = SoundCue::synthesized({.duration = 1});
    for (int round = 0; round < 3; ++round) {
        engine.playTick(second);
        EXPECT_EQ(engine.tickNode().pendingBuffers(), 1) << round;
        EXPECT_TRUE(waitUntil([&] { return engine.tickNode().pendingBuffers() == 0; }));
    }
    engine.playTick(longCue());
    EXPECT_EQ(engine.tickNode().pendingBuffers(), 1) << "what has been played is not played again";
}

TEST(SoundEngine, AllocatesNothingForATick)
{
    SoundEngine engine(Resources);
    const auto before = allocationCount();
    for (int tick = 0; tick < 50; ++tick) {
        engine.playTick(SoundCue::tick()); // behind one that sounds
    }
    EXPECT_EQ(allocationCount(), before);
    for (int tick = 0; tick < 5; ++tick) {
        EXPECT_TRUE(waitUntil([&] { return engine.tickNode().pendingBuffers() == 0; }));
        const auto quiet = allocationCount();
        engine.playTick(SoundCue::tick()); // alone
        EXPECT_EQ(allocationCount(), quiet);
    }
}

TEST(SoundEngine, SwitchedOffPlaysNothingAndSynthesisesNothing)
{
    SoundEngine engine(Resources);
    engine.setEnabled(false);
    EXPECT_FALSE(engine.isEnabled());
    const auto cue = longCue();
    const auto before = allocationCount();
    engine.play(cue);
    engine.playTick(cue);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(engine.oneShotIndex(), 0U);
    EXPECT_EQ(engine.tickNode().pendingBuffers(), 0);
    EXPECT_THAT(pending(engine), ElementsAre(0, 0, 0));

    engine.setEnabled(true);
    engine.play(cue);
    EXPECT_THAT(pending(engine), ElementsAre(1, 0, 0));
}

TEST(SoundEngine, SwitchedOffLetsWhatSoundsEnd)
{
    SoundEngine engine(Resources);
    engine.play(longCue());
    engine.playTick(longCue());
    engine.setEnabled(false);
    EXPECT_THAT(pending(engine), ElementsAre(1, 0, 0));
    EXPECT_EQ(engine.tickNode().pendingBuffers(), 1);
}

TEST(SoundEngine, FadesTheLoopInTwentyStepsTheFirstAtOnce)
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

TEST(SoundEngine, AFadesStepsShareItsTime)
{
    SoundEngine engine(Resources);
    EXPECT_EQ(engine.pendingFadeStep(), std::chrono::milliseconds(0));
    engine.fadeLoop(0, 2.0);
    EXPECT_EQ(engine.pendingFadeStep(), std::chrono::milliseconds(100));
    engine.loopNode().play();
    engine.setEnabled(false); // in 0.15 seconds
    EXPECT_EQ(engine.pendingFadeStep(), std::chrono::milliseconds(8));
}

TEST(SoundEngine, FadeWithoutALengthIsDoneAtOnce)
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

TEST(SoundEngine, AnotherFadeEndsTheRunningOneWithoutItsCompletion)
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

TEST(SoundEngine, CompletionMayBeginAnotherFade)
{
    SoundEngine engine(Resources);
    engine.fadeLoop(0, 0.02, [&] { engine.fadeLoop(0.5F, 0.02); });
    EXPECT_TRUE(waitUntil([&] { return engine.loopNode().volume() == 0.5F; }));
}

TEST(SoundEngine, SwitchedOffFadesAPlayingLoopOutAndStopsIt)
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

TEST(SoundEngine, SwitchedOffWhileALoopFadesStartsFromTheVolumeItHas)
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

TEST(SoundEngine, SwitchedOffLeavesALoopAloneThatDoesNotPlay)
{
    SoundEngine engine(Resources);
    engine.setEnabled(false);
    EXPECT_EQ(engine.loopNode().volume(), 1.0F);
}

TEST(SoundEngine, GoneDuringAFadeCompletesNothing)
{
    bool completed = false;
    {
        SoundEngine engine(Resources);
        engine.fadeLoop(0, 0.02, [&] { completed = true; });
    }
    EXPECT_FALSE(waitUntil([&] { return completed; }, std::chrono::seconds(1)));
}

TEST(PlayerNode, BringsAVolumeOutsideTheRangeIn)
{
    AudioEngine engine;
    PlayerNode node(engine);
    for (const auto &[asked, got] : std::vector<std::pair<float, float>>{
             {0.3F, 0.3F}, {2, 1}, {-1, 0}, {std::numeric_limits<float>::quiet_NaN(), 0}}) {
        node.setVolume(asked);
        EXPECT_EQ(node.volume(), got);
    }
}

TEST(PlayerNode, HoldsWhatIsScheduledUntilItPlaysAndForgetsItWhenStopped)
{
    AudioEngine engine;
    PlayerNode node(engine);
    ASSERT_TRUE(engine.start());
    const auto second = std::make_shared<SampleBuffer>(SampleBuffer{.samples = std::vector<float>(44100)});
    node.schedule(second);
    node.schedule(second);
    EXPECT_EQ(node.pendingBuffers(), 2);
    node.play();
    EXPECT_TRUE(waitUntil([&] { return node.pendingBuffers() == 1; }));
    node.stop();
    EXPECT_FALSE(node.isPlaying());
    EXPECT_EQ(node.pendingBuffers(), 0);
}

TEST(AudioEngine, RestsWhenNothingSoundsAndWakesForTheNextBufferWithoutAllocating)
{
    AudioEngine engine;
    PlayerNode node(engine);
    ASSERT_TRUE(engine.start());
    node.play();
    const auto second = std::make_shared<SampleBuffer>(SampleBuffer{.samples = std::vector<float>(44100)});
    node.schedule(second);
    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(engine.isResting());
        EXPECT_TRUE(waitUntil([&] { return engine.isResting(); }));
        EXPECT_EQ(node.pendingBuffers(), 0) << "it never rests before the end";
        const auto before = allocationCount();
        node.schedule(second);
        EXPECT_EQ(allocationCount(), before);
        EXPECT_EQ(node.pendingBuffers(), 1);
    }
    EXPECT_TRUE(waitUntil([&] { return node.pendingBuffers() == 0; })) << "a woken device plays";
}

TEST(AudioEngine, DoesNotRestWhileSomethingSounds)
{
    AudioEngine engine;
    PlayerNode node(engine);
    ASSERT_TRUE(engine.start());
    node.play();
    node.schedule(std::make_shared<SampleBuffer>(SampleBuffer{.samples = std::vector<float>(60 * 44100)}));
    EXPECT_FALSE(waitUntil([&] { return engine.isResting(); }, std::chrono::seconds(4)));
}

TEST(PlayerNode, WithoutADeviceKeepsItsStateAndDropsWhatIsScheduled)
{
    AudioEngine engine; // never started
    PlayerNode node(engine);
    node.setVolume(0.5F);
    node.play();
    node.schedule(std::make_shared<SampleBuffer>(SampleBuffer{.samples = std::vector<float>(44100)}));
    EXPECT_EQ(node.pendingBuffers(), 0);
    EXPECT_TRUE(node.isPlaying());
    EXPECT_EQ(node.volume(), 0.5F);
    node.stop();
    EXPECT_FALSE(node.isPlaying());
}
