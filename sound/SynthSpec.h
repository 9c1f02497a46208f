#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace larkspan {

// A sound described as notes, to be synthesised. All times are seconds.
struct SynthSpec
{
    enum class Waveform { sine, triangle };

    // One tone: it rises for attack, falls to sustainLevel for decay, holds, and falls to silence for release.
    struct Note
    {
        double frequency = 440; // hertz
        double startTime = 0;   // from the buffer's start
        Waveform waveform = Waveform::sine;
        double attack = 0;
        double decay = 0;
        double sustainLevel = 1; // 0 to 1
        double sustainDuration = 0;
        double release = 0;
        double gain = 1;              // linear
        bool exponentialTail = false; // decay and release fall exponentially, down to -80 decibels

        friend bool operator==(const Note &, const Note &) = default;
    };

    std::vector<Note> notes;
    double duration = 0;
    bool isLoop = false;
    double loopCrossfade = 0.18; // at the seam; only loops have one

    friend bool operator==(const SynthSpec &, const SynthSpec &) = default;
};

} // namespace larkspan

// Specs are the keys of the cache of synthesised buffers.
template <>
struct std::hash<larkspan::SynthSpec>
{
    std::size_t operator()(const larkspan::SynthSpec &spec) const noexcept;
};
