#pragma once

#include <cstddef>

namespace larkspan::test {

// Returns how often this thread has called operator new, in the program that links AllocationCount.cpp.
[[nodiscard]] std::size_t allocationCount();

} // namespace larkspan::test
