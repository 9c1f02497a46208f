#include "output/CopyMeter.h"

#include <algorithm>
#include <utility>

namespace larkspan {

CopyMeter::CopyMeter(std::int64_t totalBytes, bool verifies, std::function<void(const CopyProgress &)> tell,
                     std::function<Clock::time_point()> now)
    : m_tell(std::move(tell))
    , m_now(std::move(now))
    , m_progress{.verifies = verifies, .totalBytes = totalBytes}
    , m_accounted(m_now())
    , m_told(m_accounted)
{}

void CopyMeter::beginFile(std::int64_t bytes)
{
    account();
    m_isInFile = true;
    m_size = bytes;
    m_progress.phase = CopyPhase::copying;
}

void CopyMeter::enter(CopyPhase phase)
{
    account();
    m_progress.phase = phase;
}

void CopyMeter::advance(std::int64_t bytes)
{
    if (!m_isInFile) {
        return;
    }
    account();
    std::int64_t &passed = m_progress.phase == CopyPhase::copying ? m_progress.copiedBytes : m_progress.verifiedBytes;
    passed = std::min(passed + bytes, m_before + m_size);
    tellAtTimes();
}

void CopyMeter::endFile()
{
    if (!m_isInFile) {
        return; // a copy that was lost again later
    }
    account();
    m_isInFile = false;
    m_before += m_size;
    m_progress.copiedBytes = m_before;
    m_progress.verifiedBytes = m_progress.verifies ? m_before : 0;
    tellAtTimes();
}

void CopyMeter::account()
{
    const auto now = m_now();
    if (m_isInFile) {
        double &seconds =
            m_progress.phase == CopyPhase::copying ? m_progress.copyingSeconds : m_progress.verifyingSeconds;
        seconds += std::chrono::duration<double>(now - m_accounted).count();
    }
    m_accounted = now;
}

void CopyMeter::tellAtTimes()
{
    if (m_tell && m_accounted - m_told >= interval) {
        m_told = m_accounted;
        m_tell(m_progress);
    }
}

} // namespace larkspan
