#include "shell/launcher/CarouselScroll.h"

#include <algorithm>
#include <cmath>

namespace larkspan {

bool CarouselScroll::handle(const Event &event)
{
    if (!m_callbacks.onDrift || !m_callbacks.onCommit || !m_callbacks.onCancel) {
        return false;
    }
    switch (event.phase) {
    case Phase::Momentum:
        return true; // or a flick would step several cards
    case Phase::Began:
        begin();
        return track(event);
    case Phase::Changed:
        if (!m_tracking) {
            begin(); // it began elsewhere
        }
        return track(event);
    case Phase::Ended:
    case Phase::Cancelled:
        return end();
    case Phase::None:
        break;
    }
    return turnWheel(event);
}

void CarouselScroll::begin()
{
    // A second device may begin before the first one has ended: the first one's drift is taken back.
    if (hasDrifted()) {
        m_callbacks.onCancel();
    }
    m_travelX = m_travelY = 0.0;
    m_engaged = m_committed = false;
    m_tracking = true;
}

bool CarouselScroll::track(const Event &event)
{
    if (m_committed) {
        return true;
    }
    m_travelX += event.deltaX;
    m_travelY += event.deltaY;
    if (!m_engaged) {
        m_engaged = std::abs(m_travelX) > axisLock && std::abs(m_travelX) > std::abs(m_travelY);
        if (!m_engaged) {
            return false;
        }
    }
    if (std::abs(m_travelX) >= commitDistance) {
        m_committed = true;
        m_callbacks.onCommit(m_travelX < 0.0 ? 1 : -1);
    } else {
        m_callbacks.onDrift(std::clamp(m_travelX, -driftLimit, driftLimit));
    }
    return true;
}

bool CarouselScroll::end()
{
    if (!m_tracking) {
        return false;
    }
    const bool mustSpringBack = hasDrifted();
    m_travelX = m_travelY = 0.0;
    m_engaged = m_tracking = m_committed = false;
    if (mustSpringBack) {
        m_callbacks.onCancel();
    }
    return true;
}

bool CarouselScroll::turnWheel(const Event &event)
{
    // Written so that what is no number is passed on.
    if (!(std::abs(event.deltaX) > std::abs(event.deltaY)) || !(std::abs(event.deltaX) > leastNotch)) {
        return false;
    }
    if (event.seconds - m_lastNotch > notchGap) {
        m_lastNotch = event.seconds;
        m_callbacks.onCommit(event.deltaX < 0.0 ? 1 : -1);
    }
    return true;
}

} // namespace larkspan
