#include "tests/sound/AllocationCount.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <execinfo.h>
#include <link.h>

// Every form without an alignment is replaced: a sanitizer's forms don't call one another, and memory that one of them
// gave may not be freed by ours.

namespace {

thread_local bool isCounting = false;
thread_local std::size_t allocations = 0;

struct Range
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

// Returns where OpenAL's code is.
Range openAL()
{
    Range range;
    dl_iterate_phdr(
        [](dl_phdr_info *library, std::size_t /*size*/, void *found) {
            if (std::strstr(library->dlpi_name, "/libopenal.") == nullptr) {
                return 0;
            }
            for (std::size_t i = 0; i < library->dlpi_phnum; ++i) {
                const auto &part = library->dlpi_phdr[i];
                if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0) {
                    const std::uintptr_t begin = library->dlpi_addr + part.p_vaddr;
                    *static_cast<Range *>(found) = {begin, begin + part.p_memsz};
                }
            }
            return 1;
        },
        &range);
    return range;
}

// Its own callers may be elsewhere: what both instantiate, as std::string, is taken from the program.
bool isInsideOpenAL()
{
    static const Range library = openAL();
    std::array<void *, 64> callers;
    const auto known = callers.begin() + ::backtrace(callers.data(), static_cast<int>(callers.size()));
    return std::any_of(callers.begin(), known, [](const void *caller) {
        const auto address = reinterpret_cast<std::uintptr_t>(caller);
        return address >= library.begin && address < library.end;
    });
}

// Null where there is no memory.
void *counted(std::size_t size) noexcept
{
    if (isCounting && !isInsideOpenAL()) {
        ++allocations;
    }
    return std::malloc(size > 0 ? size : 1);
}

void *countedOrThrow(std::size_t size)
{
    if (void *memory = counted(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void *operator new(std::size_t size)
{
    return countedOrThrow(size);
}
void *operator new[](std::size_t size)
{
    return countedOrThrow(size);
}
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return counted(size);
}
void *operator new[](std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return counted(size);
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, const std::nothrow_t & /*tag*/) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory, const std::nothrow_t & /*tag*/) noexcept
{
    std::free(memory);
}

namespace larkspan::test {

void beginCountingAllocations()
{
    allocations = 0;
    isCounting = true;
}

std::size_t endCountingAllocations()
{
    isCounting = false;
    return allocations;
}

} // namespace larkspan::test
