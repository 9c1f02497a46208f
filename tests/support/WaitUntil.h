#pragma once

#include <chrono>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QTimer>

namespace larkspan::test {

// Lets the event loop run until the condition holds. False when it still doesn't after the time-out, which is a hang,
// not a measure of speed.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::seconds timeout = std::chrono::seconds(60))
{
    QTimer wakeUp; // so that a condition which no event announces is looked at again
    wakeUp.start(std::chrono::milliseconds(5));
    const QDeadlineTimer deadline(timeout);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace larkspan::test
