#pragma once

#include <cstddef>

// In a program that links MallocCount.cpp. By whatever road memory is asked for: new, Qt's containers, the driver.
namespace larkspan::test {

// From now on what this thread asks malloc for counts.
void countMallocsOfThisThread();
// Returns the count of all threads that count, since the start.
[[nodiscard]] std::size_t mallocCount();
// Returns the count of this thread since it began, whether it is counted or not.
[[nodiscard]] std::size_t mallocCountOfThisThread();

} // namespace larkspan::test
