#pragma once

#include <chrono>

namespace larkspan {

// A moment in UTC. Microseconds reach from long before the distant past to long after any shoot.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

// The date of a clip that has none: 0001-01-01 00:00:00 UTC, so that it sorts before every real one.
inline constexpr Date distantPast =
    std::chrono::sys_days{std::chrono::year{1} / std::chrono::January / std::chrono::day{1}};

} // namespace larkspan
