#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace larkspan {

// The format of samples: 32-bit floats from -1 to 1, the channels of a frame side by side.
struct AudioFormat
{
    int sampleRate = 44100; // hertz
    int channels = 1;

    friend bool operator==(const AudioFormat &, const AudioFormat &) = default;
};

// A whole sound in memory.
struct SampleBuffer
{
    AudioFormat format;
    std::vector<float> samples;

    [[nodiscard]] std::size_t frameCount() const { return samples.size() / static_cast<std::size_t>(format.channels); }
};

// Never changed once made: the cache, the output and whoever plays it share it.
using SampleBufferPtr = std::shared_ptr<const SampleBuffer>;

} // namespace larkspan
