#include "tests/support/MallocCount.h"

#include <atomic>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// From the sanitizers' allocator, whose header the compiler doesn't install.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*malloc)(const volatile void *, std::size_t), // NOLINT
                                                         void (*free)(const volatile void *));
#else
extern "C" {
void *__libc_malloc(std::size_t size);                // NOLINT: the C library's own name
void *__libc_calloc(std::size_t n, std::size_t size); // NOLINT
void *__libc_realloc(void *memory, std::size_t size); // NOLINT
}
#endif

namespace {

std::atomic<std::size_t> count = 0;
thread_local bool counts = false;
thread_local std::size_t countOfThisThread = 0;

void add()
{
    ++countOfThisThread;
    if (counts) {
        count.fetch_add(1, std::memory_order_relaxed);
    }
}

} // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// A sanitizer's malloc can't be replaced, but says what it is asked for.
namespace {

[[maybe_unused]] const int isHooked = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, std::size_t) { add(); }, [](const volatile void *) {});

} // namespace

#else

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

#endif

namespace larkspan::test {

void countMallocsOfThisThread()
{
    counts = true;
}

std::size_t mallocCount()
{
    return count;
}

std::size_t mallocCountOfThisThread()
{
    return countOfThisThread;
}

} // namespace larkspan::test
