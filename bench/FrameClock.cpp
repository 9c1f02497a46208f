#include "bench/FrameClock.h"

#include <pthread.h>

#include <QtCore/QThread>

#include "tests/support/MallocCount.h"

namespace larkspan::bench {

namespace {

double milliseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

} // namespace

FrameClock::FrameClock(QQuickWindow &window, std::size_t frames) : m_marks(frames)
{
    pthread_getcpuclockid(pthread_self(), &m_mainClock);
    test::countMallocsOfThisThread();
    connect(&window, &QQuickWindow::frameSwapped, this, &FrameClock::note, Qt::DirectConnection);
}

void FrameClock::note()
{
    test::countMallocsOfThisThread();
    const std::size_t index = m_count++;
    if (index < m_marks.size()) {
        const bool isMain = QThread::currentThread() == thread();
        m_marks[index] = {.main = milliseconds(m_mainClock),
                          .render = isMain ? 0.0 : milliseconds(CLOCK_THREAD_CPUTIME_ID),
                          .process = processMilliseconds(),
                          .allocations = test::mallocCount()};
    }
}

std::vector<FrameCost> FrameClock::costs() const
{
    std::vector<FrameCost> costs;
    for (std::size_t i = 1; i < std::min<std::size_t>(m_count, m_marks.size()); ++i) {
        const Mark &before = m_marks[i - 1];
        const Mark &after = m_marks[i];
        costs.push_back({.main = after.main - before.main,
                         .render = after.render - before.render,
                         .process = after.process - before.process,
                         .allocations = static_cast<double>(after.allocations - before.allocations)});
    }
    return costs;
}

double processMilliseconds()
{
    return milliseconds(CLOCK_PROCESS_CPUTIME_ID);
}

} // namespace larkspan::bench
