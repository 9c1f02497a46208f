// The cues, which the engine plays on its nodes.
#include <filesystem>

#include <gmock/gmock.h>

#include "sound/SoundEngine.h"
#include "tests/sound/AllocationCount.h"
#include "tests/sound/SilentDevice.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::ElementsAre;

namespace {

std::vector<int> pending(const SoundEngine &engine)
{
    std::vector<int> counts;
    for (const auto &node : engine.oneShotNodes()) {
        counts.push_back(node.pendingBuffers());
    }
    return counts;
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
    SampleBufferPtr tick;
    SampleBufferPtr chord;
    EXPECT_EQ(allocationsDuring([&] {
                  tick = engine.buffer(SoundCue::tick());
                  chord = engine.buffer(SoundCue::resultsChord());
              }),
              0U);
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
    const auto playTick = [&] { engine.playTick(SoundCue::tick()); };
    for (int tick = 0; tick < 50; ++tick) {
        EXPECT_EQ(allocationsDuring(playTick), 0U) << "behind one that sounds";
    }
    for (int tick = 0; tick < 5; ++tick) {
        EXPECT_TRUE(waitUntil([&] { return engine.tickNode().pendingBuffers() == 0; }));
        EXPECT_EQ(allocationsDuring(playTick), 0U) << "alone";
    }
}

TEST(SoundEngine, SwitchedOffPlaysNothingAndSynthesisesNothing)
{
    SoundEngine engine(Resources);
    engine.setEnabled(false);
    EXPECT_FALSE(engine.isEnabled());
    const auto cue = longCue();
    EXPECT_EQ(allocationsDuring([&] {
                  engine.play(cue);
                  engine.playTick(cue);
              }),
              0U);
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
