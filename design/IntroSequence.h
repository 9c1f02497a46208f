#pragma once

#include <QtCore/QElapsedTimer>

#include "design/FrameTicks.h"
#include "design/IntroTimeline.h"

namespace larkspan {

// Plays the intro's timeline once, by the clock: a late frame shows the look of its own moment. Main thread.
class IntroSequence : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::IntroLook look READ look NOTIFY lookChanged)
    // The moment that is shown. It can be set while the sequence isn't playing.
    Q_PROPERTY(double seconds READ seconds WRITE setSeconds NOTIFY lookChanged)
    Q_PROPERTY(bool hasStarted READ hasStarted NOTIFY hasStartedChanged)

public:
    explicit IntroSequence(QObject *parent = nullptr);

    // Starts the clock. A second call changes nothing.
    Q_INVOKABLE void start();

    [[nodiscard]] const IntroLook &look() const { return m_look; }
    [[nodiscard]] double seconds() const { return m_seconds; }
    void setSeconds(double seconds);
    // Moves to this moment, and emits the signals that have become due and weren't emitted before.
    void playTo(double seconds);
    [[nodiscard]] bool hasStarted() const { return m_clock.isValid(); }

Q_SIGNALS:
    void lookChanged();
    void hasStartedChanged();
    void chimeDue();
    void finished();

private:
    [[nodiscard]] double elapsed() const;

    QElapsedTimer m_clock;
    bool m_hasChimed = false;
    bool m_hasFinished = false;
    double m_seconds = 0.0;
    IntroLook m_look = introTimeline::lookAt(0.0);
    FrameTicks m_frames;
};

} // namespace larkspan
