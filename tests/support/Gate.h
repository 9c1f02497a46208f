#pragma once

#include <semaphore>
#include <stdexcept>

#include <QtCore/QThread>

#include "tests/support/WaitUntil.h"

namespace larkspan::test {

// Holds work back until it is told to go on, and says when somebody has arrived.
class Gate
{
public:
    void pass()
    {
        m_arrived.release();
        m_open.acquire();
    }
    // On the main thread its events go on meanwhile: what is awaited may come only after some of them.
    void awaitArrival()
    {
        if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
            m_arrived.acquire();
        } else if (!waitUntil([this] { return m_arrived.try_acquire(); })) {
            throw std::runtime_error("nobody has arrived");
        }
    }
    void open(int count = 1) { m_open.release(count); }

private:
    std::counting_semaphore<> m_arrived{0};
    std::counting_semaphore<> m_open{0};
};

} // namespace larkspan::test
