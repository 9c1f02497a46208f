#pragma once

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/support/FfmpegMedia.h"

namespace larkspan::test {

// Source arguments for makeMedia: a moving test picture.
inline std::string picture(const std::string &size, const std::string &rate, const std::string &seconds)
{
    return "-f lavfi -i testsrc2=s=" + size + ":r=" + rate + ":d=" + seconds + " ";
}

// Ten frames a second, each a little brighter than the one before, so that a frame tells its number.
inline std::string brightening(const std::string &seconds)
{
    return "-f lavfi -i color=black:s=64x48:r=10:d=" + seconds + ",geq=lum=20+4*N:cb=128:cr=128 ";
}

inline const std::string h264 = "-c:v libx264 -preset ultrafast -pix_fmt yuv420p ";

inline std::string bigEndian32(std::uint32_t value)
{
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

// Overwrites bytes of a file's content, counted from the first place where a marker stands.
inline std::string patched(std::string content, std::string_view marker, std::size_t offset, std::string_view bytes)
{
    const std::size_t found = content.find(marker);
    if (found == std::string::npos || found + offset + bytes.size() > content.size()) {
        throw std::runtime_error("no place to patch at " + std::string(marker));
    }
    return content.replace(found + offset, bytes.size(), bytes);
}

// A movie whose first track is shown through x' = a x + c y, y' = b x + d y.
inline std::string withTransform(std::string content, double a, double b, double c, double d)
{
    const auto fixed = [](double value) {
        return bigEndian32(static_cast<std::uint32_t>(static_cast<std::int32_t>(value * 65536)));
    };
    const std::string zero = bigEndian32(0);
    return patched(std::move(content), "tkhd", 44, fixed(a) + fixed(b) + zero + fixed(c) + fixed(d));
}

// One box of a movie file.
inline std::string box(std::string_view type, std::string_view content)
{
    return bigEndian32(static_cast<std::uint32_t>(content.size() + 8)) + std::string(type) + std::string(content);
}

} // namespace larkspan::test
