#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "core/copies/CopyRecord.h"

namespace larkspan {

// Measures a copy run, its two phases apart, and tells of it a few times a second. One thread at a time.
class CopyMeter
{
public:
    using Clock = std::chrono::steady_clock;

    // Least time between two tellings.
    static constexpr std::chrono::milliseconds interval{200};

    // totalBytes: of all files. tell may be empty.
    CopyMeter(std::int64_t totalBytes, bool verifies, std::function<void(const CopyProgress &)> tell,
              std::function<Clock::time_point()> now = Clock::now);

    // A file of this size has its turn, and is copied first.
    void beginFile(std::int64_t bytes);
    void enter(CopyPhase phase);
    // Bytes that have passed in this phase. Of a file that grew no more count than it began with.
    void advance(std::int64_t bytes);
    // The file counts as through, also one that failed, so that the rest of the way is known.
    void endFile();

    const CopyProgress &progress() const { return m_progress; }

private:
    // Adds the time since the last call to the phase that it was spent in.
    void account();
    void tellAtTimes();

    std::function<void(const CopyProgress &)> m_tell;
    std::function<Clock::time_point()> m_now;
    CopyProgress m_progress;
    Clock::time_point m_accounted;
    Clock::time_point m_told;
    bool m_isInFile = false;
    std::int64_t m_before = 0; // bytes of the files that are through
    std::int64_t m_size = 0;   // of the file that has its turn
};

} // namespace larkspan
