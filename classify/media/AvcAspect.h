#pragma once

#include <cstdint>
#include <span>

namespace larkspan {

// How wide a pixel of an H.264 stream is for its height, from the decoder configuration of a movie file ("avcC").
// FFmpeg finds it only by decoding a picture, which would cost the probe more than all the rest. 0 if it isn't said.
double avcPixelAspect(std::span<const std::uint8_t> configuration);

} // namespace larkspan
