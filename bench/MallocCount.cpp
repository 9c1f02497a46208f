#include "bench/MallocCount.h"

#include <atomic>

extern "C" {
void *__libc_malloc(std::size_t size);                // NOLINT: the C library's own name
void *__libc_calloc(std::size_t n, std::size_t size); // NOLINT
void *__libc_realloc(void *memory, std::size_t size); // NOLINT
}

namespace {

std::atomic<std::size_t> count = 0;
thread_local bool counts = false;

void add()
{
    if (counts) {
        count.fetch_add(1, std::memory_order_relaxed);
    }
}

} // namespace

extern "C" {

void *malloc(std::size_t size)
{
    add();
    return __libc_malloc(size);
}

void *calloc(std::size_t n, std::size_t size)
{
    add();
    return __libc_calloc(n, size);
}

void *realloc(void *memory, std::size_t size)
{
    add();
    return __libc_realloc(memory, size);
}
}

namespace larkspan::bench {

void countMallocsOfThisThread()
{
    counts = true;
}

std::size_t mallocCount()
{
    return count;
}

} // namespace larkspan::bench
