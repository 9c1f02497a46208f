// The entry of the fuzzers: LARKSPAN_FUZZ_TARGET is the reader that this one attacks.
#include <cstddef>
#include <cstdint>

#include "tests/fuzz/FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    LARKSPAN_FUZZ_TARGET({reinterpret_cast<const char *>(bytes), size});
    return 0;
}
