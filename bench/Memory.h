#pragma once

#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

namespace larkspan::bench {

// Returns the resident memory of this process, in millions of bytes.
inline double residentMegabytes()
{
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

// Returns the most that it has had since it started, likewise.
inline double peakMegabytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024.0 / 1e6;
}

} // namespace larkspan::bench
