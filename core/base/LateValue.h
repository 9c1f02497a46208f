#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stop_token>

namespace larkspan {

// A value that one thread gives, once, and others wait for. Any thread.
template <typename T>
class LateValue
{
public:
    void give(T value)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_value = std::move(value);
        }
        m_given.notify_all();
    }

    // None when it isn't given in time, or when a stop is asked for first.
    std::optional<T> waitFor(std::chrono::milliseconds time, const std::stop_token &stop) const
    {
        std::unique_lock lock(m_mutex);
        m_given.wait_for(lock, stop, time, [this] { return m_value.has_value(); });
        return m_value;
    }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable_any m_given;
    std::optional<T> m_value;
};

} // namespace larkspan
