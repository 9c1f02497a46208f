#include "core/base/FreedMemory.h"

#include <malloc.h>

namespace larkspan {

void returnFreedMemory()
{
    ::malloc_trim(0);
}

} // namespace larkspan
