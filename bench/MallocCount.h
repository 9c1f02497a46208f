#pragma once

#include <cstddef>

namespace larkspan::bench {

// From now on what this thread asks malloc for counts, by whatever road: new, Qt's containers, the graphics driver.
void countMallocsOfThisThread();
// Of all threads that count, since the start.
[[nodiscard]] std::size_t mallocCount();

} // namespace larkspan::bench
