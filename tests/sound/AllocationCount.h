#pragma once

#include <cstddef>

namespace larkspan::test {

// What this thread has asked operator new for so far, in the program that links AllocationCount.cpp.
[[nodiscard]] std::size_t allocationCount();

} // namespace larkspan::test
