// One player, and the device that it plays on.
#include <limits>

#include <gtest/gtest.h>

#include "sound/AudioEngine.h"
#include "sound/PlayerNode.h"
#include "tests/sound/AllocationCount.h"
#include "tests/sound/SilentDevice.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;

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
        EXPECT_EQ(allocationsDuring([&] { node.schedule(second); }), 0U);
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
