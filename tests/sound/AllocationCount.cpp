#include "tests/sound/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

} // namespace

// The array and nothrow forms of the library call this one.
void *operator new(std::size_t size)
{
    ++allocations;
    if (void *memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

namespace larkspan::test {

std::size_t allocationCount()
{
    return allocations;
}

} // namespace larkspan::test
