#pragma once

#include <array>
#include <charconv>

#include <QtCore/QString>

namespace larkspan {

// A number with so many decimals, as printf writes it: what lies halfway goes to the even neighbour, and the point is a
// point in every language.
[[nodiscard]] inline QString withDecimals(double number, int decimals)
{
    std::array<char, 400> text{}; // the largest number has 309 digits before its point
    const auto end = std::to_chars(text.begin(), text.end(), number, std::chars_format::fixed, decimals).ptr;
    return QString::fromLatin1(text.data(), end - text.begin());
}

} // namespace larkspan
