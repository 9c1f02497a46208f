#pragma once

#include <cstddef>

// In a program that links MallocCount.cpp. By whatever road memory is asked for: new, Qt's containers, the driver.
namespace larkspan::test {

// From now on what this thread asks malloc for counts.
void countMallocsOfThisThread();
// Of all threads that count, since the start.
[[nodiscard]] std::size_t mallocCount();
// Of this thread since it began, whether it counts or not.
[[nodiscard]] std::size_t mallocCountOfThisThread();

} // namespace larkspan::test
