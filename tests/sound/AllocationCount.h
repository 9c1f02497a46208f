#pragma once

#include <cstddef>

namespace larkspan::test {

// Returns how often this thread has called operator new, in the program that links AllocationCount.cpp. Calls that
// OpenAL itself makes don't count: newer versions take memory for every few buffers that are queued.
[[nodiscard]] std::size_t allocationCount();

} // namespace larkspan::test
