#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <QtCore/QProcess>

#include "sound/SoundCue.h"
#include "sound/SoundFile.h"
#include "sound/Synthesis.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::Each;
using testing::Eq;

namespace {

constexpr auto Sine = SynthSpec::Waveform::sine;
const std::filesystem::path Chime = std::filesystem::path(LARKSPAN_RESOURCES) / "intro_chime.wav";

std::vector<float> rendered(const SoundCue &cue)
{
    return synthesize(std::get<SynthSpec>(cue.source), 44100).samples;
}

std::vector<float> from(const std::vector<float> &samples, std::size_t first)
{
    return {samples.begin() + static_cast<std::ptrdiff_t>(first), samples.end()};
}

float peak(const std::vector<float> &samples)
{
    return std::abs(std::ranges::max(samples, {}, [](float sample) { return std::abs(sample); }));
}

} // namespace

TEST(SoundCue, TheTickIsOneShortNote)
{
    const SynthSpec spec{{{1500, 0, Sine, 0.001, 0, 1, 0, 0.017, 0.13, true}}, 0.02, false, 0.18};
    EXPECT_EQ(SoundCue::tick(), SoundCue::synthesized(spec));
}

TEST(SoundCue, TheChordIsABellOfThreePartials)
{
    const SynthSpec spec{{{880, 0, Sine, 0.003, 0, 1, 0, 0.5, 0.25, true},
                          {2112, 0, Sine, 0.003, 0, 1, 0, 0.5, 0.125, true},
                          {3080, 0, Sine, 0.003, 0, 1, 0, 0.5, 0.0625, true}},
                         0.6,
                         false,
                         0.18};
    EXPECT_EQ(SoundCue::resultsChord(), SoundCue::synthesized(spec));
}

TEST(SoundCue, TheChimeIsAFile)
{
    EXPECT_EQ(SoundCue::introChime(), SoundCue::file("intro_chime", "wav"));
}

TEST(SoundCue, TheTickHas882FramesAndIsSilentAfterItsNote)
{
    const auto samples = rendered(SoundCue::tick());
    EXPECT_EQ(samples.size(), 882U);
    EXPECT_NE(samples[793], 0.0F); // the last frame before 0.018 s
    EXPECT_THAT(from(samples, 794), Each(Eq(0.0F)));
    EXPECT_GT(peak(samples), 0.1F);
    EXPECT_LE(peak(samples), 0.13F);
}

TEST(SoundCue, TheChordHas26460FramesAndIsSilentAfterItsNotes)
{
    const auto samples = rendered(SoundCue::resultsChord());
    EXPECT_EQ(samples.size(), 26460U);
    EXPECT_NE(samples[22182], 0.0F); // the last frame before 0.503 s
    EXPECT_THAT(from(samples, 22183), Each(Eq(0.0F)));
    EXPECT_GT(peak(samples), 0.25F);
    EXPECT_LE(peak(samples), 0.4375F);
}

TEST(SoundCue, TheChimeThatShipsIsShortAndInsideTheRange)
{
    const auto chime = readSoundFile(Chime);
    ASSERT_TRUE(chime);
    EXPECT_EQ(chime->format, (AudioFormat{.sampleRate = 44100, .channels = 1}));
    EXPECT_LT(chime->frameCount(), 2U * 44100);
    EXPECT_GT(peak(chime->samples), 0.2F);
    EXPECT_LT(peak(chime->samples), 1.0F);
    EXPECT_LT(std::abs(chime->samples.back()), 1e-3F) << "it would end with a click";
}

TEST(SoundCue, TheChimeThatShipsIsWhatItsProgramMakes)
{
    const TempFolder folder;
    const auto made = folder / "chime.wav";
    ASSERT_EQ(QProcess::execute(QStringLiteral(LARKSPAN_MAKE_INTRO_CHIME), {QString::fromStdString(made.string())}), 0);
    const auto fresh = readSoundFile(made);
    const auto stored = readSoundFile(Chime);
    ASSERT_TRUE(fresh && stored);
    // Another library's sine may round the last bit the other way.
    EXPECT_THAT(fresh->samples, testing::Pointwise(testing::FloatNear(1.5F / 32768), stored->samples));
}
