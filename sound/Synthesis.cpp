#include "sound/Synthesis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace larkspan {

namespace {

// An exponential fall ends at -80 decibels, which nobody hears.
constexpr double tailEnd = 0.0001;
constexpr double longestSeconds = 600;

double mixedValue(std::span<const SynthSpec::Note> notes, double s)
{
    double sum = 0;
    for (const auto &note : notes) {
        const double t = s - note.startTime;
        if (t < 0) {
            continue;
        }
        if (const double level = envelope(note, t); level > 0) {
            sum += note.gain * level * waveValue(note.waveform, note.frequency, t);
        }
    }
    return sum;
}

} // namespace

std::size_t frameCount(double seconds, int sampleRate)
{
    if (!(seconds > 0) || sampleRate <= 0) {
        return 0;
    }
    return static_cast<std::size_t>(sampleRate * std::min(seconds, longestSeconds));
}

double envelope(const SynthSpec::Note &note, double t)
{
    if (t < note.attack) {
        return t / note.attack;
    }
    const double decayEnd = note.attack + note.decay;
    if (t < decayEnd) {
        const double p = (t - note.attack) / note.decay;
        return note.exponentialTail ? std::pow(std::max(tailEnd, note.sustainLevel), p)
                                    : 1 + p * (note.sustainLevel - 1);
    }
    const double holdEnd = decayEnd + note.sustainDuration;
    if (t < holdEnd) {
        return note.sustainLevel;
    }
    if (t < holdEnd + note.release) {
        const double p = (t - holdEnd) / note.release;
        return note.sustainLevel * (note.exponentialTail ? std::pow(tailEnd, p) : 1 - p);
    }
    return 0;
}

double waveValue(SynthSpec::Waveform waveform, double frequency, double t)
{
    const double turns = frequency * t;
    const double phase = turns - std::floor(turns);
    if (waveform == SynthSpec::Waveform::sine) {
        return std::sin(2 * std::numbers::pi * phase);
    }
    return phase < 0.5 ? 4 * phase - 1 : 3 - 4 * phase;
}

std::vector<float> seamlessLoop(std::vector<float> frames, std::size_t length, std::size_t crossfade)
{
    for (std::size_t i = 0; i < crossfade && length + i < frames.size(); ++i) {
        const double angle = static_cast<double>(i) / static_cast<double>(crossfade) * std::numbers::pi / 2;
        frames[i] = static_cast<float>(frames[i] * std::sin(angle) + frames[length + i] * std::cos(angle));
    }
    return {frames.begin(), frames.begin() + static_cast<std::ptrdiff_t>(std::min(length, frames.size()))};
}

SampleBuffer synthesize(const SynthSpec &spec, int sampleRate)
{
    const double crossfade = spec.isLoop ? std::max(0.0, spec.loopCrossfade) : 0;
    SampleBuffer buffer{.format = {.sampleRate = sampleRate, .channels = 1}};
    buffer.samples.resize(frameCount(spec.duration > 0 ? spec.duration + crossfade : 0, sampleRate));
    for (std::size_t i = 0; i < buffer.samples.size(); ++i) {
        const double value = mixedValue(spec.notes, static_cast<double>(i) / sampleRate);
        buffer.samples[i] = static_cast<float>(std::clamp(value, -1.0, 1.0));
    }
    if (spec.isLoop) {
        buffer.samples = seamlessLoop(std::move(buffer.samples), frameCount(spec.duration, sampleRate),
                                      frameCount(crossfade, sampleRate));
    }
    return buffer;
}

} // namespace larkspan

std::size_t std::hash<larkspan::SynthSpec>::operator()(const larkspan::SynthSpec &spec) const noexcept
{
    std::size_t seed = spec.notes.size();
    const auto mix = [&seed](double value) {
        seed ^= std::hash<double>()(value) + 0x9e3779b97f4a7c15U + (seed << 6U) + (seed >> 2U);
    };
    for (const auto &note : spec.notes) {
        for (const double value :
             {note.frequency, note.startTime, static_cast<double>(note.waveform), note.attack, note.decay,
              note.sustainLevel, note.sustainDuration, note.release, note.gain, note.exponentialTail ? 1.0 : 0.0}) {
            mix(value);
        }
    }
    mix(spec.duration);
    mix(spec.isLoop ? 1.0 : 0.0);
    mix(spec.loopCrossfade);
    return seed;
}
