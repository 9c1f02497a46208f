#include "design/LKElapsed.h"

#include "design/SurfaceMath.h"

namespace larkspan {

LKElapsed::LKElapsed(QObject *parent) : QObject(parent)
{
    constexpr std::chrono::milliseconds tick(100);
    m_timer.setInterval(tick);
    connect(&m_timer, &QTimer::timeout, this, &LKElapsed::textChanged);
}

void LKElapsed::setRunning(bool running)
{
    if (running == isRunning()) {
        return;
    }
    if (running) {
        m_timer.start();
        Q_EMIT textChanged(); // the time that passed meanwhile
    } else {
        m_timer.stop();
    }
    Q_EMIT runningChanged();
}

QString LKElapsed::text() const
{
    return elapsedText(std::chrono::steady_clock::now() - m_start);
}

} // namespace larkspan
