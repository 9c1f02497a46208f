#include "sound/SoundCue.h"

#include <utility>

namespace larkspan {

SoundCue SoundCue::synthesized(SynthSpec spec)
{
    return {.source = std::move(spec)};
}

SoundCue SoundCue::file(std::string name, std::string ext)
{
    return {.source = File{.name = std::move(name), .ext = std::move(ext)}};
}

const SoundCue &SoundCue::tick()
{
    static const auto cue = synthesized({
        .notes = {{.frequency = 1500, .attack = 0.001, .release = 0.017, .gain = 0.13, .exponentialTail = true}},
        .duration = 0.02,
    });
    return cue;
}

const SoundCue &SoundCue::resultsChord()
{
    // A bell: the partials stand at 2.4 and 3.5 times the fundamental, each half as loud as the one below.
    static const auto cue = synthesized({
        .notes = {{.frequency = 880, .attack = 0.003, .release = 0.5, .gain = 0.25, .exponentialTail = true},
                  {.frequency = 2112, .attack = 0.003, .release = 0.5, .gain = 0.125, .exponentialTail = true},
                  {.frequency = 3080, .attack = 0.003, .release = 0.5, .gain = 0.0625, .exponentialTail = true}},
        .duration = 0.6,
    });
    return cue;
}

const SoundCue &SoundCue::introChime()
{
    static const auto cue = file("intro_chime", "wav");
    return cue;
}

} // namespace larkspan
