#include "core/base/ByteCount.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

struct Unit
{
    const char *name;
    std::uint64_t bytes;
    int decimals; // at most
};

constexpr std::array units{
    Unit{"KB", 1'000, 0},
    Unit{"MB", 1'000'000, 1},
    Unit{"GB", 1'000'000'000, 2},
    Unit{"TB", 1'000'000'000'000, 2},
    Unit{"PB", 1'000'000'000'000'000, 2},
    Unit{"EB", 1'000'000'000'000'000'000, 2},
};

std::uint64_t stepsPerUnit(const Unit &unit)
{
    return unit.decimals == 0 ? 1 : unit.decimals == 1 ? 10 : 100;
}

// In whole steps of the unit's last decimal, halves up.
std::uint64_t steps(std::uint64_t bytes, const Unit &unit)
{
    const std::uint64_t step = unit.bytes / stepsPerUnit(unit);
    return (bytes + step / 2) / step;
}

QString magnitudeText(std::uint64_t bytes)
{
    if (bytes == 0) {
        return u"Zero KB"_s;
    }
    if (bytes < 1000) {
        return bytes == 1 ? u"1 byte"_s : QString::number(bytes) + u" bytes"_s;
    }
    // A count that rounds up to a thousand of a unit is one of the next.
    auto unit = units.begin();
    while (unit + 1 != units.end() && steps(bytes, *unit) >= 1000 * stepsPerUnit(*unit)) {
        ++unit;
    }
    const auto count = static_cast<double>(steps(bytes, *unit)) / static_cast<double>(stepsPerUnit(*unit));
    return QString::number(count, 'g', 5) + u' ' + QLatin1String(unit->name);
}

} // namespace

QString byteCountText(std::int64_t bytes)
{
    const auto count = static_cast<std::uint64_t>(bytes);
    return bytes < 0 ? u'-' + magnitudeText(0 - count) : magnitudeText(count);
}

} // namespace larkspan
