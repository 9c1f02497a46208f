#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include "sound/Synthesis.h"

using namespace larkspan;
using testing::DoubleEq;
using testing::Each;
using testing::ElementsAre;
using testing::FloatNear;
using testing::Pointwise;

namespace {

using Note = SynthSpec::Note;
constexpr auto Infinity = std::numeric_limits<double>::infinity();
constexpr auto NotANumber = std::numeric_limits<double>::quiet_NaN();

// Rises for 1 s, falls to a half for 2 s, holds for 1 s, falls to silence for 4 s.
constexpr Note Straight{.attack = 1, .decay = 2, .sustainLevel = 0.5, .sustainDuration = 1, .release = 4};
constexpr Note Curved{
    .attack = 1, .decay = 2, .sustainLevel = 0.5, .sustainDuration = 1, .release = 4, .exponentialTail = true};

// A note that is at full level all the time.
constexpr Note Steady{.frequency = 1, .sustainDuration = 100};

std::vector<double> levels(const Note &note, const std::vector<double> &times)
{
    std::vector<double> result;
    for (const double t : times) {
        result.push_back(envelope(note, t));
    }
    return result;
}

SynthSpec oneNote(Note note, double duration)
{
    return {.notes = {note}, .duration = duration};
}

} // namespace

TEST(Envelope, RisesFallsHoldsAndEndsInStraightLines)
{
    EXPECT_THAT(levels(Straight, {0, 0.25, 1, 2, 3, 3.5, 4, 5, 7, 8, 100}),
                Pointwise(DoubleEq(), std::vector<double>{0, 0.25, 1, 0.75, 0.5, 0.5, 0.5, 0.375, 0.125, 0, 0}));
}

TEST(Envelope, FallsExponentiallyAndStopsAbruptlyAtMinus80Decibels)
{
    EXPECT_THAT(levels(Curved, {0.25, 1, 2, 3, 4, 5, 6, 8}),
                Pointwise(DoubleEq(), std::vector<double>{0.25, 1, std::sqrt(0.5), 0.5, 0.5, 0.05, 0.005, 0}));
    EXPECT_NEAR(envelope(Curved, 7.999999), 0.00005, 1e-9);
}

TEST(Envelope, DecaysExponentiallyToMinus80DecibelsWhereTheHeldLevelIsNone)
{
    const Note note{.decay = 1, .sustainLevel = 0, .release = 1, .exponentialTail = true};
    EXPECT_THAT(levels(note, {0, 0.5, 1, 1.5}), Pointwise(DoubleEq(), std::vector<double>{1, 0.01, 0, 0}));
}

TEST(Envelope, AttackOfZeroSkipsTheRiseAtOnce)
{
    EXPECT_THAT(levels({.decay = 1, .sustainLevel = 0.5, .release = 1}, {0, 0.5}),
                Pointwise(DoubleEq(), std::vector<double>{1, 0.75}));
    EXPECT_THAT(levels({.sustainLevel = 0.5, .sustainDuration = 1}, {0}), ElementsAre(0.5));
    EXPECT_THAT(levels({.sustainLevel = 0.5, .release = 1}, {0}), ElementsAre(0.5));
}

TEST(Envelope, GoesStraightFromTheAttackToTheReleaseWithoutDecayAndHold)
{
    const Note note{.attack = 1, .sustainLevel = 1, .release = 1};
    EXPECT_THAT(levels(note, {0.5, 1, 1.5, 2}), Pointwise(DoubleEq(), std::vector<double>{0.5, 1, 0.5, 0}));
}

TEST(Envelope, ReleaseOfZeroEndsANoteAsSoonAsItsHoldEnds)
{
    const Note note{.attack = 1, .sustainLevel = 0.5, .sustainDuration = 1};
    EXPECT_THAT(levels(note, {1, 1.999, 2, 2.001}), Pointwise(DoubleEq(), std::vector<double>{0.5, 0.5, 0, 0}));
}

TEST(WaveValue, SineStartsAtZero)
{
    for (const auto &[t, value] : std::vector<std::pair<double, double>>{
             {0, 0}, {0.125, std::numbers::sqrt2 / 2}, {0.25, 1}, {0.5, 0}, {0.75, -1}, {10.25, 1}}) {
        EXPECT_NEAR(waveValue(SynthSpec::Waveform::sine, 1, t), value, 1e-12) << t;
    }
}

TEST(WaveValue, TriangleStartsAtMinusOneAndPeaksHalfWay)
{
    for (const auto &[t, value] : std::vector<std::pair<double, double>>{
             {0, -1}, {0.125, 0}, {0.25, 1}, {0.375, 0}, {0.4375, -0.5}, {5.25, 1}}) {
        EXPECT_DOUBLE_EQ(waveValue(SynthSpec::Waveform::triangle, 2, t), value) << t;
    }
}

TEST(FrameCount, IsWholeFramesAndNothingForWhatIsNoLength)
{
    EXPECT_EQ(frameCount(0.02, 44100), 882U);
    EXPECT_EQ(frameCount(0.6, 44100), 26460U);
    EXPECT_EQ(frameCount(1.9 / 10, 10), 1U);
    for (const double seconds : {0.0, -1.0, NotANumber, -Infinity}) {
        EXPECT_EQ(frameCount(seconds, 44100), 0U);
    }
    EXPECT_EQ(frameCount(1, 0), 0U);
    EXPECT_EQ(frameCount(1, -44100), 0U);
    EXPECT_EQ(frameCount(Infinity, 10), 6000U);
}

TEST(Synthesize, MixesItsNotesAtTheirGainsFromTheirStarts)
{
    // Four frames a second: a sine of one hertz is 0, 1, 0, -1.
    auto late = Steady;
    late.startTime = 1;
    late.gain = 0.5;
    auto quiet = Steady;
    quiet.gain = 0.25;
    const SynthSpec spec{.notes = {quiet, late}, .duration = 2};
    const auto buffer = synthesize(spec, 4);
    EXPECT_EQ(buffer.format, (AudioFormat{.sampleRate = 4, .channels = 1}));
    EXPECT_THAT(buffer.samples,
                Pointwise(FloatNear(1e-6F), std::vector<float>{0.0, 0.25, 0.0, -0.25, 0.0, 0.75, 0.0, -0.75}));
}

TEST(Synthesize, ClipsWhatIsTooLoud)
{
    auto loud = Steady;
    loud.gain = 3;
    EXPECT_THAT(synthesize(oneNote(loud, 1), 4).samples,
                Pointwise(FloatNear(1e-6F), std::vector<float>{0.0, 1.0, 0.0, -1.0}));
}

TEST(Synthesize, LevelBelowZeroAddsNothing)
{
    auto note = Steady;
    note.sustainLevel = -1;
    EXPECT_THAT(synthesize(oneNote(note, 1), 8).samples, Each(0.0F));
}

TEST(Synthesize, WithoutNotesIsSilenceAndWithoutALengthIsEmpty)
{
    EXPECT_THAT(synthesize({.duration = 1}, 4).samples, ElementsAre(0, 0, 0, 0));
    for (const double duration : {0.0, -1.0, NotANumber}) {
        EXPECT_THAT(synthesize(oneNote(Steady, duration), 44100).samples, testing::IsEmpty());
        EXPECT_THAT(synthesize({.duration = duration, .isLoop = true}, 44100).samples, testing::IsEmpty());
    }
}

TEST(SeamlessLoop, FadesTheFramesPastTheSeamIntoTheHeadAtEqualPower)
{
    const float half = std::sqrt(0.5F);
    EXPECT_THAT(seamlessLoop({1, 2, 3, 4, 10, 20}, 4, 2),
                Pointwise(FloatNear(1e-5F), std::vector<float>{10.0F, 2 * half + 20 * half, 3.0F, 4.0F}));
}

TEST(SeamlessLoop, StopsWhereFewerFramesWereRenderedThanTheCrossfadeAsksFor)
{
    EXPECT_THAT(seamlessLoop({1, 2, 3, 4}, 3, 2), ElementsAre(4, 2, 3));
    EXPECT_THAT(seamlessLoop({1, 2}, 4, 2), ElementsAre(1, 2));
}

TEST(Synthesize, LoopGoesOnAtItsSeamWhereTheSoundWouldHaveGoneOn)
{
    auto spec = oneNote({.frequency = 3.7, .sustainDuration = 100}, 1);
    const auto whole = synthesize(oneNote(spec.notes[0], 1.5), 1000).samples;
    spec.isLoop = true;
    spec.loopCrossfade = 0.5;
    const auto loop = synthesize(spec, 1000).samples;
    ASSERT_EQ(loop.size(), 1000U);
    EXPECT_FLOAT_EQ(loop[0], whole[1000]);
    EXPECT_TRUE(std::equal(loop.begin() + 500, loop.end(), whole.begin() + 500)) << "only the head is changed";
}

TEST(Synthesize, LoopWithoutACrossfadeIsExactlyItsDurationUnchanged)
{
    auto spec = oneNote(Curved, 1.5);
    const auto plain = synthesize(spec, 44100).samples;
    spec.isLoop = true;
    spec.loopCrossfade = 0;
    EXPECT_EQ(synthesize(spec, 44100).samples, plain);
    spec.loopCrossfade = -1;
    EXPECT_EQ(synthesize(spec, 44100).samples, plain);
}

RC_GTEST_PROP(Synthesize, StaysInsideTheRangeWhateverTheNotes, ())
{
    const auto number = [](int from, int to) {
        return rc::gen::map(rc::gen::inRange(from, to), [](int value) { return value / 100.0; });
    };
    SynthSpec spec{
        .duration = *number(-10, 200), .isLoop = *rc::gen::arbitrary<bool>(), .loopCrossfade = *number(-50, 400)};
    for (int count = *rc::gen::inRange(0, 4); count > 0; --count) {
        spec.notes.push_back({.frequency = *number(-1000, 100000),
                              .startTime = *number(-100, 100),
                              .waveform = *rc::gen::element(SynthSpec::Waveform::sine, SynthSpec::Waveform::triangle),
                              .attack = *number(-10, 50),
                              .decay = *number(-10, 50),
                              .sustainLevel = *number(-100, 200),
                              .sustainDuration = *number(-10, 50),
                              .release = *number(-10, 50),
                              .gain = *number(-300, 300),
                              .exponentialTail = *rc::gen::arbitrary<bool>()});
    }
    const auto samples = synthesize(spec, 500).samples;
    RC_ASSERT(samples.size() == frameCount(spec.duration, 500));
    // A crossfade at equal power may add two full frames up to the square root of two.
    const float limit = spec.isLoop ? std::numbers::sqrt2_v<float> + 1e-6F : 1.0F;
    for (const float sample : samples) {
        RC_ASSERT(std::abs(sample) <= limit);
    }
}
