#include <sndfile.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include "sound/SoundFile.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::FloatNear;
using testing::Pointwise;

namespace {

std::filesystem::path writeWave(const TempFolder &folder, const std::vector<float> &samples, AudioFormat format)
{
    auto path = folder / "sound.wav";
    SF_INFO info{};
    info.samplerate = format.sampleRate;
    info.channels = format.channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    auto *file = sf_open(path.c_str(), SFM_WRITE, &info);
    sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(file);
    return path;
}

SampleBufferPtr bufferOf(std::vector<float> samples, AudioFormat format)
{
    return std::make_shared<SampleBuffer>(SampleBuffer{.format = format, .samples = std::move(samples)});
}

} // namespace

TEST(SoundFile, IsReadWholeInItsOwnFormat)
{
    const TempFolder folder;
    const AudioFormat format{.sampleRate = 22050, .channels = 2};
    const auto sound = readSoundFile(writeWave(folder, {0.5F, -0.5F, 0.25F, 1.0F}, format));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->format, format);
    EXPECT_THAT(sound->samples, testing::ElementsAre(0.5F, -0.5F, 0.25F, 1.0F));
}

TEST(SoundFile, WhatIsNoSoundIsNothing)
{
    const TempFolder folder;
    EXPECT_FALSE(readSoundFile(folder / "missing.wav"));
    EXPECT_FALSE(readSoundFile(folder.path()));
    EXPECT_FALSE(readSoundFile(folder.write("empty.wav")));
    EXPECT_FALSE(readSoundFile(folder.write("text.wav", "not a sound at all")));
    EXPECT_FALSE(readSoundFile(folder.write("zeros.wav", std::string(100000, '\0'))));
    EXPECT_FALSE(readSoundFile(writeWave(folder, {}, {})));
}

TEST(SoundFile, APipeIsNotWaitedFor)
{
    const TempFolder folder;
    const auto pipe = folder / "pipe.wav";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(readSoundFile(pipe));
}

TEST(SoundFile, SamplesThatAreNoNumbersMakeItDamaged)
{
    const TempFolder folder;
    EXPECT_FALSE(readSoundFile(writeWave(folder, {0.0F, std::numeric_limits<float>::quiet_NaN()}, {})));
    EXPECT_FALSE(readSoundFile(writeWave(folder, {0.0F, std::numeric_limits<float>::infinity()}, {})));
}

TEST(SoundFile, CutOffAnywhereIsWhatIsLeftOfItOrNothing)
{
    const TempFolder folder;
    const std::vector<float> samples(50, 0.5F);
    const auto whole = bytesOf(writeWave(folder, samples, {}));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        if (const auto sound = readSoundFile(folder.write("cut.wav", whole.substr(0, length)))) {
            EXPECT_LE(sound->frameCount(), samples.size()) << length;
            EXPECT_THAT(sound->samples, testing::Each(0.5F)) << length;
        }
    }
}

RC_GTEST_PROP(SoundFile, BytesThatWereChangedCrashNothing, ())
{
    static const TempFolder folder;
    static const auto whole = bytesOf(writeWave(folder, std::vector<float>(50, 0.5F), {}));
    auto content = whole;
    for (int count = *rc::gen::inRange(1, 6); count > 0; --count) {
        content[*rc::gen::inRange<std::size_t>(0, std::min<std::size_t>(whole.size(), 100))] =
            *rc::gen::arbitrary<char>();
    }
    if (const auto sound = readSoundFile(folder.write("changed.wav", content))) {
        const auto stereo = converted(sound, {.sampleRate = 44100, .channels = 2});
        const auto isNumber = [](float sample) { return std::isfinite(sample); };
        RC_ASSERT(std::ranges::all_of(sound->samples, isNumber));
        RC_ASSERT((!stereo || stereo->samples.size() % 2 == 0));
    }
}

TEST(Converted, KeepsWhatAlreadyHasTheFormat)
{
    const auto sound = bufferOf({1, 2}, {});
    EXPECT_EQ(converted(sound, {}), sound);
}

TEST(Converted, RepeatsOneChannelAndAveragesMoreThanAreWanted)
{
    EXPECT_THAT(converted(bufferOf({1, 2}, {.channels = 1}), {.channels = 2})->samples,
                testing::ElementsAre(1, 1, 2, 2));
    EXPECT_THAT(converted(bufferOf({1, 2, 6, 0, 0, 3}, {.channels = 3}), {.channels = 2})->samples,
                testing::ElementsAre(3, 3, 1, 1));
    EXPECT_THAT(converted(bufferOf({1, 3, 6, 0}, {.channels = 2}), {.channels = 1})->samples,
                testing::ElementsAre(2, 3));
}

TEST(Converted, KeepsTheToneAtAnotherRate)
{
    const auto tone = [](int rate) {
        std::vector<float> samples;
        for (int i = 0; i < rate; ++i) {
            samples.push_back(0.5F * static_cast<float>(std::sin(2 * std::numbers::pi * 440 * i / rate)));
        }
        return bufferOf(std::move(samples), {.sampleRate = rate, .channels = 1});
    };
    for (const int rate : {8000, 22050, 48000, 96000}) {
        const auto sound = converted(tone(rate), {});
        ASSERT_TRUE(sound);
        EXPECT_NEAR(static_cast<double>(sound->frameCount()), 44100, 2) << rate;
        // Away from the ends, where the filter sees half of the sound only.
        const auto expected = tone(44100)->samples;
        const auto middle = [](const std::vector<float> &samples) {
            return std::vector<float>(samples.begin() + 4000, samples.begin() + 40000);
        };
        EXPECT_THAT(middle(sound->samples), Pointwise(FloatNear(0.01F), middle(expected))) << rate;
    }
}

TEST(Converted, ImpossibleRateIsNothing)
{
    EXPECT_FALSE(converted(bufferOf({1, 2}, {.sampleRate = 1, .channels = 1}), {}));
}
