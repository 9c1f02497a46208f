#pragma once

#include <filesystem>

#include "sound/SampleBuffer.h"

namespace larkspan {

// Reads a sound whole, in its own rate and channels. Null if it is missing, damaged, empty, not a plain file, or longer
// than any cue (a minute in high resolution).
[[nodiscard]] SampleBufferPtr readSoundFile(const std::filesystem::path &path);

// The same sound in another format: channels averaged or repeated, the rate converted. Null if that can't be done.
[[nodiscard]] SampleBufferPtr converted(const SampleBufferPtr &buffer, AudioFormat format);

} // namespace larkspan
