// make_intro_chime FILE: writes the chime of the intro, resources/intro_chime.wav, 16 bits and one channel.
#include <sndfile.h>

#include <iostream>
#include <tuple>

#include "sound/AudioEngine.h"
#include "sound/Synthesis.h"

using namespace larkspan;

namespace {

// Three small bells, one after the other and rising: a fifth, then the octave.
SynthSpec chime()
{
    constexpr double apart = 0.09;
    SynthSpec spec{.duration = 1.9};
    for (const double fundamental : {587.33, 880.0, 1174.66}) {
        const double start = static_cast<double>(spec.notes.size()) / 3 * apart;
        for (const auto &[partial, gain, release] : {std::tuple{1.0, 0.2, 1.7}, {2.4, 0.06, 1.1}, {3.5, 0.02, 0.7}}) {
            spec.notes.push_back({.frequency = fundamental * partial,
                                  .startTime = start,
                                  .attack = 0.004,
                                  .release = release,
                                  .gain = gain,
                                  .exponentialTail = true});
        }
    }
    return spec;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::cerr << "usage: make_intro_chime FILE\n";
        return 2;
    }
    const auto buffer = synthesize(chime(), AudioEngine::sampleRate);
    SF_INFO info{};
    info.samplerate = buffer.format.sampleRate;
    info.channels = buffer.format.channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    auto *file = sf_open(argv[1], SFM_WRITE, &info);
    const auto frames = static_cast<sf_count_t>(buffer.frameCount());
    const bool written = file != nullptr && sf_writef_float(file, buffer.samples.data(), frames) == frames;
    if (sf_close(file) != 0 || !written) {
        std::cerr << "can't write " << argv[1] << '\n';
        return 1;
    }
}
