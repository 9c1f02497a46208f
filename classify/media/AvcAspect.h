#pragma once

#include <cstdint>
#include <span>

namespace larkspan {

// Returns the width of an H.264 stream's pixel for its height, from a movie file's decoder configuration ("avcC").
// FFmpeg finds it only by decoding a picture, which would cost the probe more than all the rest. 0 if it isn't said.
double avcPixelAspect(std::span<const std::uint8_t> configuration);

} // namespace larkspan
