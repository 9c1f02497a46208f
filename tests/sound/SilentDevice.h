#pragma once

#include <cstdlib>
#include <filesystem>

#include "sound/SoundCue.h"

namespace larkspan::test {

// OpenAL's device that plays in real time to nobody. OpenAL reads this once, when the first device is opened.
inline const bool nullDevice = ::setenv("ALSOFT_DRIVERS", "null", 1) == 0;

inline const std::filesystem::path Resources = LARKSPAN_RESOURCES;

// Longer than any test waits, so that it still sounds when the test looks.
inline SoundCue longCue(double frequency = 440)
{
    return SoundCue::synthesized({.notes = {{.frequency = frequency, .release = 1}}, .duration = 120});
}

} // namespace larkspan::test
