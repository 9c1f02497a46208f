#include "design/IntroSequence.h"

#include <chrono>

#include <QtCore/QTimer>

namespace larkspan {

namespace {

std::chrono::milliseconds after(double seconds)
{
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

IntroSequence::IntroSequence(QObject *parent)
    : QObject(parent)
    , m_frames([this] { setSeconds(static_cast<double>(m_clock.nsecsElapsed()) * 1e-9); })
{}

void IntroSequence::start()
{
    if (hasStarted()) {
        return;
    }
    m_clock.start();
    m_frames.start();
    // Heard and over in time even where no frame is drawn.
    QTimer::singleShot(after(introTimeline::chime), Qt::PreciseTimer, this, &IntroSequence::chimeDue);
    QTimer::singleShot(after(introTimeline::finish), Qt::PreciseTimer, this, &IntroSequence::finish);
    Q_EMIT hasStartedChanged();
}

void IntroSequence::setSeconds(double seconds)
{
    m_seconds = seconds;
    m_look = introTimeline::lookAt(seconds);
    Q_EMIT lookChanged();
}

void IntroSequence::finish()
{
    m_frames.stop();
    setSeconds(introTimeline::finish);
    Q_EMIT finished();
}

} // namespace larkspan
