#include "classify/media/ToneMap.h"

#include <algorithm>
#include <cmath>

namespace larkspan {

namespace {

constexpr float ordinaryWhite = 203.0f; // cd/m²
constexpr float brightest = 1000.0f;    // cd/m², the usual mastering peak

// SMPTE ST 2084: code value 0 to 1 to cd/m².
double pqLight(double code)
{
    constexpr double m1 = 2610.0 / 16384.0;
    constexpr double m2 = 2523.0 / 4096.0 * 128.0;
    constexpr double c1 = 3424.0 / 4096.0;
    constexpr double c2 = 2413.0 / 4096.0 * 32.0;
    constexpr double c3 = 2392.0 / 4096.0 * 32.0;
    const double power = std::pow(code, 1.0 / m2);
    return 10'000.0 * std::pow(std::max(power - c1, 0.0) / (c2 - c3 * power), 1.0 / m1);
}

// ARIB STD-B67: code value 0 to 1 to light of the scene, 0 to 1.
double hlgScene(double code)
{
    constexpr double a = 0.17883277;
    constexpr double b = 0.28466892;
    constexpr double c = 0.55991073;
    return code <= 0.5 ? code * code / 3.0 : (std::exp((code - c) / a) + b) / 12.0;
}

double srgbCode(double light)
{
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

// Linear up to the knee, then bending so that the peak becomes 1.
float pressed(float light)
{
    constexpr float knee = 0.6f;
    constexpr float peak = brightest / ordinaryWhite;
    if (light <= knee) {
        return light;
    }
    const float over = (light - knee) / (peak - knee);     // 0 to 1 up to the peak
    constexpr float slope = (peak - knee) / (1.0f - knee); // leaves the knee without a corner
    return std::min(knee + (1.0f - knee) * slope * over / (1.0f + (slope - 1.0f) * over), 1.0f);
}

} // namespace

ToneMap::ToneMap(LightCurve curve) : m_curve(curve), m_toLight(), m_toCode()
{
    for (int i = 0; i < tableSize; ++i) {
        const double position = static_cast<double>(i) / (tableSize - 1);
        m_toLight[static_cast<std::size_t>(i)] =
            static_cast<float>(curve == LightCurve::Pq ? pqLight(position) / ordinaryWhite : hlgScene(position));
        m_toCode[static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(srgbCode(position * position), 0.0, 1.0)));
    }
}

const ToneMap &ToneMap::of(LightCurve curve)
{
    static const ToneMap pq(LightCurve::Pq);
    static const ToneMap hlg(LightCurve::Hlg);
    return curve == LightCurve::Pq ? pq : hlg;
}

std::uint32_t ToneMap::map(const std::uint16_t *rgb) const
{
    float red = m_toLight[rgb[0] >> 4];
    float green = m_toLight[rgb[1] >> 4];
    float blue = m_toLight[rgb[2] >> 4];
    if (m_curve == LightCurve::Hlg) {
        // The display's part of the curve: gamma 1.2 on luminance at the usual peak.
        const float luminance = 0.2627f * red + 0.6780f * green + 0.0593f * blue;
        const float gain = std::pow(luminance, 0.2f) * brightest / ordinaryWhite;
        red *= gain;
        green *= gain;
        blue *= gain;
    }
    const float lead = std::max({red, green, blue, 1e-6f});
    const float factor = pressed(lead) / lead;
    const auto code = [this, factor](float light) {
        const float root = std::sqrt(std::clamp(light * factor, 0.0f, 1.0f));
        return static_cast<std::uint32_t>(m_toCode[static_cast<std::size_t>(std::lround(root * (tableSize - 1)))]);
    };
    // From the primaries of BT.2020 to those of BT.709.
    return 0xff000000u | code(1.6605f * red - 0.5876f * green - 0.0728f * blue) << 16 |
           code(-0.1246f * red + 1.1329f * green - 0.0083f * blue) << 8 |
           code(-0.0182f * red - 0.1006f * green + 1.1187f * blue);
}

} // namespace larkspan
