#pragma once

#include <array>
#include <cstdint>

namespace larkspan {

// The code in which a high-dynamic-range picture holds its light.
enum class LightCurve { Pq, Hlg };

// Brings pictures of BT.2020 in PQ or HLG into sRGB. White of ordinary pictures (203 cd/m²) keeps its place up to the
// knee, what is brighter is pressed together below the peak (1000 cd/m²); hues hold, since the brightest channel leads.
class ToneMap
{
public:
    // The tables of a curve, made on first use and kept. Any thread.
    static const ToneMap &of(LightCurve curve);

    // Red, green and blue of one pixel, 16 bits each, into 0xffRRGGBB.
    std::uint32_t map(const std::uint16_t *rgb) const;

private:
    explicit ToneMap(LightCurve curve);

    static constexpr int tableSize = 4096;

    LightCurve m_curve;
    std::array<float, tableSize> m_toLight;       // by code value; 1 is the white of ordinary pictures
    std::array<std::uint8_t, tableSize> m_toCode; // by the square root of light, 0 to 1
};

} // namespace larkspan
