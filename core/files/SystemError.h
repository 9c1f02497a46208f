#pragma once

#include <cerrno>
#include <system_error>

namespace larkspan {

// The error of the system call that this thread has just made, from errno.
inline std::error_code lastError()
{
    return {errno, std::generic_category()};
}

} // namespace larkspan
