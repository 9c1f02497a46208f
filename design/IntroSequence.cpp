#include "design/IntroSequence.h"

#include <algorithm>
#include <chrono>

#include <QtCore/QTimer>

namespace larkspan {

namespace {

std::chrono::milliseconds after(double seconds)
{
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

IntroSequence::IntroSequence(QObject *parent) : QObject(parent), m_frames([this] { playTo(elapsed()); }) {}

void IntroSequence::start()
{
    if (hasStarted()) {
        return;
    }
    m_clock.start();
    m_frames.start();
    // Heard and over in time even where no frame is drawn.
    for (const double due : {introTimeline::chime, introTimeline::finish}) {
        QTimer::singleShot(after(due), Qt::PreciseTimer, this, [this, due] { playTo(std::max(due, elapsed())); });
    }
    Q_EMIT hasStartedChanged();
}

void IntroSequence::setSeconds(double seconds)
{
    m_seconds = seconds;
    m_look = introTimeline::lookAt(seconds);
    Q_EMIT lookChanged();
}

void IntroSequence::playTo(double seconds)
{
    if (m_hasFinished) {
        return;
    }
    m_hasFinished = seconds >= introTimeline::finish;
    setSeconds(std::min(seconds, introTimeline::finish));
    if (!m_hasChimed && seconds >= introTimeline::chime) {
        m_hasChimed = true;
        Q_EMIT chimeDue();
    }
    if (m_hasFinished) {
        m_frames.stop();
        Q_EMIT finished();
    }
}

double IntroSequence::elapsed() const
{
    return static_cast<double>(m_clock.nsecsElapsed()) * 1e-9;
}

} // namespace larkspan
