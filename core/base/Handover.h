#pragma once

#include <functional>
#include <utility>

#include <QtCore/QRunnable>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace larkspan {

// An object goes to another thread through one of Qt's queues: what happened before handOver() has happened for
// whoever calls takeOver(). Qt's locks make it so; these two only tell the thread sanitizer, which can't see them.
inline void handOver([[maybe_unused]] void *object)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_release(object);
#endif
}

inline void takeOver([[maybe_unused]] void *object)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_acquire(object);
#endif
}

// Work for a QThreadPool, which takes it over and deletes it.
class PoolJob : public QRunnable
{
public:
    explicit PoolJob(std::function<void()> work) : m_work(std::move(work)) { handOver(this); }

    void run() override
    {
        takeOver(this);
        m_work();
    }

private:
    std::function<void()> m_work;
};

} // namespace larkspan
