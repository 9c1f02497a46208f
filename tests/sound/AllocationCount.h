#pragma once

#include <concepts>
#include <cstddef>

namespace larkspan::test {

// Begins and ends the counting of this thread; not to be nested. Use allocationsDuring.
void beginCountingAllocations();
[[nodiscard]] std::size_t endCountingAllocations();

// Returns how often this thread calls operator new during a step, in the program that links AllocationCount.cpp. What
// OpenAL takes doesn't count: newer versions take memory for every few buffers that are queued and for every waking.
template <std::invocable Step>
[[nodiscard]] std::size_t allocationsDuring(Step step)
{
    beginCountingAllocations();
    step();
    return endCountingAllocations();
}

} // namespace larkspan::test
