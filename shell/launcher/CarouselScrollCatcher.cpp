#include "shell/launcher/CarouselScrollCatcher.h"

#include <chrono>

#include <QtGui/QWheelEvent>

namespace larkspan {

namespace {

using Phase = CarouselScroll::Phase;

constexpr double anglesPerNotch = 120.0;
constexpr double anglesPerPoint = 4.0;                 // where the display doesn't tell points
constexpr std::chrono::milliseconds gesturePause{150}; // fingers that rest so long have lifted

double secondsNow()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A wheel turns by whole notches; fingers, and wheels that turn smoothly, by less or between.
bool isWholeNotches(QPoint angle)
{
    constexpr int notch = 120;
    return angle.x() % notch == 0 && angle.y() % notch == 0;
}

} // namespace

CarouselScrollCatcher::CarouselScrollCatcher(QQuickItem *parent)
    : QQuickItem(parent)
    , m_scroll({.onDrift = [this](double offset) { Q_EMIT drift(offset); },
                .onCommit = [this](int direction) { Q_EMIT commit(direction); },
                .onCancel = [this] { Q_EMIT cancel(); }})
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(gesturePause);
    connect(&m_pause, &QTimer::timeout, this, &CarouselScrollCatcher::endGesture);
}

bool CarouselScrollCatcher::isSwallowed(const QEvent &event)
{
    return event.type() == QEvent::Wheel && isVisible() && isEnabled() &&
           isCaught(static_cast<const QWheelEvent &>(event));
}

bool CarouselScrollCatcher::isCaught(const QWheelEvent &event)
{
    if (!contains(mapFromScene(event.position()))) {
        return false;
    }
    const Phase phase = phaseOf(event);
    QPointF delta = QPointF(event.angleDelta()) / (phase == Phase::None ? anglesPerNotch : anglesPerPoint);
    // X11's unit of points depends on the driver.
    if (phase != Phase::None && event.phase() != Qt::NoScrollPhase && !event.pixelDelta().isNull()) {
        delta = event.pixelDelta();
    }
    return m_scroll.handle({phase, delta.x(), delta.y(), secondsNow()});
}

Phase CarouselScrollCatcher::phaseOf(const QWheelEvent &event)
{
    switch (event.phase()) {
    case Qt::ScrollBegin:
        return Phase::Began;
    case Qt::ScrollUpdate:
        return Phase::Changed;
    case Qt::ScrollEnd:
        return Phase::Ended;
    case Qt::ScrollMomentum:
        return Phase::Momentum;
    case Qt::NoScrollPhase:
        break;
    }
    if (!m_pause.isActive() && isWholeNotches(event.angleDelta())) {
        return Phase::None;
    }
    const bool goesOn = m_pause.isActive();
    m_pause.start();
    return goesOn ? Phase::Changed : Phase::Began;
}

void CarouselScrollCatcher::endGesture()
{
    m_pause.stop();
    (void)m_scroll.handle({.phase = Phase::Ended});
}

void CarouselScrollCatcher::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemSceneChange || change == ItemVisibleHasChanged || change == ItemEnabledHasChanged) {
        endGesture(); // its end would no longer be seen
    }
    QQuickItem::itemChange(change, value);
}

} // namespace larkspan
