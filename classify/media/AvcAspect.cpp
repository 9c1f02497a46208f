#include "classify/media/AvcAspect.h"

#include <algorithm>
#include <array>
#include <vector>

namespace larkspan {

namespace {

// Reads a parameter set bit by bit; zeros past its end.
class BitReader
{
public:
    // Drops the bytes that keep start codes out of the stream.
    explicit BitReader(std::span<const std::uint8_t> unit)
    {
        int zeros = 0;
        for (const std::uint8_t byte : unit) {
            if (zeros >= 2 && byte == 3) {
                zeros = 0;
                continue;
            }
            zeros = byte == 0 ? zeros + 1 : 0;
            m_bytes.push_back(byte);
        }
    }

    bool ended() const { return m_position > m_bytes.size() * 8; }

    unsigned bits(int count)
    {
        unsigned value = 0;
        for (; count > 0; --count) {
            const std::size_t byte = m_position / 8;
            const unsigned bit = byte < m_bytes.size() ? m_bytes[byte] >> (7 - m_position % 8) & 1u : 0u;
            value = value << 1 | bit;
            ++m_position;
        }
        return value;
    }
    bool flag() { return bits(1) != 0; }

    // Exponential Golomb code; signed ones are only skipped, and take the same room.
    unsigned number()
    {
        int zeros = 0;
        while (zeros < 31 && !ended() && !flag()) {
            ++zeros;
        }
        return (1u << zeros) - 1u + bits(zeros);
    }
    int signedNumber()
    {
        const unsigned code = number();
        return code % 2 == 1 ? static_cast<int>(code / 2 + 1) : -static_cast<int>(code / 2);
    }

private:
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_position = 0;
};

void skipScalingList(BitReader &reader, int size)
{
    int last = 8;
    int next = 8;
    for (int i = 0; i < size && next != 0 && !reader.ended(); ++i) {
        next = (last + reader.signedNumber() + 256) % 256;
        last = next != 0 ? next : last;
    }
}

void skipChromaFormat(BitReader &reader, unsigned profile)
{
    constexpr std::array<unsigned, 13> withChroma{100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135};
    if (std::ranges::find(withChroma, profile) == withChroma.end()) {
        return;
    }
    const unsigned chroma = reader.number();
    if (chroma == 3) {
        reader.flag(); // separate colour planes
    }
    reader.number(); // luma depth
    reader.number(); // chroma depth
    reader.flag();   // lossless
    if (reader.flag()) {
        for (int i = 0; i < (chroma == 3 ? 12 : 8); ++i) {
            if (reader.flag()) {
                skipScalingList(reader, i < 6 ? 16 : 64);
            }
        }
    }
}

void skipPictureOrder(BitReader &reader)
{
    const unsigned type = reader.number();
    if (type == 0) {
        reader.number();
    } else if (type == 1) {
        reader.flag();
        reader.number();
        reader.number();
        const unsigned count = std::min(reader.number(), 255u);
        for (unsigned i = 0; i < count; ++i) {
            reader.number();
        }
    }
}

double aspectOf(BitReader &reader)
{
    struct Ratio
    {
        unsigned width;
        unsigned height;
    };
    constexpr std::array<Ratio, 17> known{{{0, 1},
                                           {1, 1},
                                           {12, 11},
                                           {10, 11},
                                           {16, 11},
                                           {40, 33},
                                           {24, 11},
                                           {20, 11},
                                           {32, 11},
                                           {80, 33},
                                           {18, 11},
                                           {15, 11},
                                           {64, 33},
                                           {160, 99},
                                           {4, 3},
                                           {3, 2},
                                           {2, 1}}};
    const unsigned index = reader.bits(8);
    Ratio ratio{0, 1};
    if (index == 255) {
        ratio.width = reader.bits(16);
        ratio.height = reader.bits(16);
    } else if (index < known.size()) {
        ratio = known[index];
    }
    return reader.ended() || ratio.height == 0 ? 0.0 : static_cast<double>(ratio.width) / ratio.height;
}

} // namespace

double avcPixelAspect(std::span<const std::uint8_t> configuration)
{
    // Version, profile, compatibility, level, length size, count; then the length of the first parameter set.
    constexpr std::size_t headSize = 8;
    if (configuration.size() < headSize || configuration[0] != 1 || (configuration[5] & 31) == 0) {
        return 0.0;
    }
    const std::size_t length = static_cast<std::size_t>(configuration[6]) << 8 | configuration[7];
    BitReader reader(configuration.subspan(headSize, std::min(length, configuration.size() - headSize)));
    reader.bits(8); // kind of unit
    const unsigned profile = reader.bits(8);
    reader.bits(16); // constraints, level
    reader.number(); // id
    skipChromaFormat(reader, profile);
    reader.number(); // frame number length
    skipPictureOrder(reader);
    reader.number(); // reference frames
    reader.flag();   // gaps allowed
    reader.number(); // width
    reader.number(); // height
    if (!reader.flag()) {
        reader.flag(); // field coding within frames
    }
    reader.flag(); // direct 8x8
    if (reader.flag()) {
        for (int side = 0; side < 4; ++side) {
            reader.number(); // cropping
        }
    }
    const bool hasUsability = reader.flag();
    return hasUsability && reader.flag() ? aspectOf(reader) : 0.0;
}

} // namespace larkspan
