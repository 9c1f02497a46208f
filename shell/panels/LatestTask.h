#pragma once

#include <stop_token>
#include <utility>

#include <QtCore/QObject>
#include <QtCore/QThreadPool>

namespace larkspan {

// Work of one kind on a thread pool, of which only the latest counts: beginning it anew, and the end of this object,
// cancel what is under way. Main thread.
class LatestTask
{
public:
    // The owner receives the results. It outlives this object, and destroys the pool only after it.
    LatestTask(QObject &owner, QThreadPool &pool) : m_owner(owner), m_pool(pool) {}
    ~LatestTask() { stop(); }
    LatestTask(const LatestTask &) = delete;
    LatestTask &operator=(const LatestTask &) = delete;

    void stop() { m_source.request_stop(); }

    // Calls work(std::stop_token) on another thread, and done with its result on the main thread unless the task was
    // stopped.
    template <typename Work, typename Done>
    void start(Work work, Done done)
    {
        stop();
        m_source = std::stop_source();
        m_pool.start([&owner = m_owner, stop = m_source.get_token(), work = std::move(work), done = std::move(done)] {
            if (stop.stop_requested()) {
                return;
            }
            QMetaObject::invokeMethod(&owner, [stop, done, result = work(stop)]() mutable {
                if (!stop.stop_requested()) {
                    done(std::move(result));
                }
            });
        });
    }

private:
    QObject &m_owner;
    QThreadPool &m_pool;
    std::stop_source m_source;
};

} // namespace larkspan
