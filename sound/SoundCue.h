#pragma once

#include <string>
#include <variant>

#include "sound/SynthSpec.h"

namespace larkspan {

// A sound of the interface: synthesised from notes, or a file among the program's resources.
struct SoundCue
{
    struct File
    {
        std::string name;
        std::string ext;

        friend bool operator==(const File &, const File &) = default;
    };

    std::variant<SynthSpec, File> source;

    [[nodiscard]] static SoundCue synthesized(SynthSpec spec);
    [[nodiscard]] static SoundCue file(std::string name, std::string ext);

    static const SoundCue &tick();         // each step of a running sort
    static const SoundCue &resultsChord(); // a sort has finished
    static const SoundCue &introChime();   // the only recorded one

    friend bool operator==(const SoundCue &, const SoundCue &) = default;
};

} // namespace larkspan
