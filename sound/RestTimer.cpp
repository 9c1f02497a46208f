#include "sound/RestTimer.h"

#include <QtCore/QSocketNotifier>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace larkspan {

RestTimer::RestTimer(std::function<void()> expired)
    : m_expired(std::move(expired))
    , m_timer(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
{
    if (!m_timer) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_timer.get(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] {
        // Nothing to read: it was started anew between its expiry and this call.
        std::uint64_t expirations = 0;
        if (read(m_timer.get(), &expirations, sizeof expirations) == sizeof expirations) {
            m_expired();
        }
    });
}

RestTimer::~RestTimer() = default;

void RestTimer::start(std::chrono::seconds delay)
{
    itimerspec when{};
    when.it_value.tv_sec = delay.count();
    timerfd_settime(m_timer.get(), 0, &when, nullptr);
}

} // namespace larkspan
