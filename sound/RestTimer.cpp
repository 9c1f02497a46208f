#include "sound/RestTimer.h"

#include <QtCore/QSocketNotifier>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace larkspan {

RestTimer::RestTimer(std::function<void()> expired)
    : m_expired(std::move(expired))
    , m_descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
{
    if (m_descriptor < 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] {
        // Nothing to read: it was started anew between its expiry and this call.
        std::uint64_t expirations = 0;
        if (read(m_descriptor, &expirations, sizeof expirations) == sizeof expirations) {
            m_expired();
        }
    });
}

RestTimer::~RestTimer()
{
    m_notifier.reset();
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

void RestTimer::start(std::chrono::seconds delay)
{
    itimerspec when{};
    when.it_value.tv_sec = delay.count();
    timerfd_settime(m_descriptor, 0, &when, nullptr);
}

} // namespace larkspan
