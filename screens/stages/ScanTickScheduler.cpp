#include "screens/stages/ScanTickScheduler.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <QtCore/QPointer>

#include "sound/SoundEngine.h"

namespace larkspan {

ScanTickScheduler::ScanTickScheduler(QObject *parent)
    : QObject(parent)
    , m_tick([] { SoundEngine::shared().playTick(SoundCue::tick()); })
{
    m_workItem.setSingleShot(true);
    m_workItem.setTimerType(Qt::PreciseTimer); // an ear hears a few milliseconds
    connect(&m_workItem, &QTimer::timeout, this, &ScanTickScheduler::tick);
}

ScanTickScheduler::ScanTickScheduler(std::function<void()> tick) : ScanTickScheduler()
{
    m_tick = std::move(tick);
}

double ScanTickScheduler::delayAfter(double progress)
{
    constexpr double slowest = 0.42; // seconds
    constexpr double gain = 0.35;    // what the whole way takes off
    constexpr double shape = 0.7;    // fast early on, flatter later
    return slowest - gain * std::pow(std::clamp(progress, 0.0, 1.0), shape);
}

void ScanTickScheduler::start(std::function<double()> progress)
{
    stop();
    m_progress = std::move(progress);
    tick();
}

void ScanTickScheduler::start(SortEngine *engine)
{
    start([engine = QPointer(engine)] { return engine ? engine->progress() : 0.0; });
}

void ScanTickScheduler::stop()
{
    m_workItem.stop();
}

void ScanTickScheduler::tick()
{
    m_tick();
    const std::chrono::duration<double> delay(delayAfter(m_progress()));
    m_workItem.start(std::chrono::round<std::chrono::milliseconds>(delay));
}

} // namespace larkspan
