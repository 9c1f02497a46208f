#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "core/files/FileDescriptor.h"

class QSocketNotifier;

namespace larkspan {

// A single-shot timer of the event loop that allocates nothing when it is started, as a QTimer does: every tick of a
// running sort starts it anew. Main thread only. It never expires where the system has no timer left.
class RestTimer
{
public:
    explicit RestTimer(std::function<void()> expired);
    ~RestTimer();
    RestTimer(const RestTimer &) = delete;
    RestTimer &operator=(const RestTimer &) = delete;

    // Counts from now, and from now only. The delay is positive.
    void start(std::chrono::seconds delay);

private:
    std::function<void()> m_expired;
    FileDescriptor m_timer;
    std::unique_ptr<QSocketNotifier> m_notifier; // ends before the timer that it watches
};

} // namespace larkspan
