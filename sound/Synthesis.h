#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "sound/SampleBuffer.h"
#include "sound/SynthSpec.h"

namespace larkspan {

// Whole frames in so many seconds; none for what isn't positive, and never more than ten minutes.
[[nodiscard]] std::size_t frameCount(double seconds, int sampleRate);

// Returns the loudness of a note t seconds after its start, 0 to 1; 0 once it has ended. t is not negative.
[[nodiscard]] double envelope(const SynthSpec::Note &note, double t);

// The bare wave at t, -1 to 1. A sine starts at 0, a triangle at -1.
[[nodiscard]] double waveValue(SynthSpec::Waveform waveform, double frequency, double t);

// Mixes the frames from length on, which were rendered past the seam, into the first ones at equal power, and drops
// them. crossfade and length are frames.
[[nodiscard]] std::vector<float> seamlessLoop(std::vector<float> frames, std::size_t length, std::size_t crossfade);

// Renders the notes to one channel. The mix is clipped at -1 and 1 and not normalised.
[[nodiscard]] SampleBuffer synthesize(const SynthSpec &spec, int sampleRate);

} // namespace larkspan
