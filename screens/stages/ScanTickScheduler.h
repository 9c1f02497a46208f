#pragma once

#include <functional>

#include <QtCore/QTimer>
#include <QtQml/qqmlregistration.h>

#include "core/engine/SortEngine.h"

namespace larkspan {

// Ticks while a sort runs, the faster the further it is. Pure feedback: it counts no clips and keeps its own pace.
// Main thread.
class ScanTickScheduler : public QObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    // Plays the house's tick, which is silent while sound is off.
    explicit ScanTickScheduler(QObject *parent = nullptr);
    // Calls the function at every tick.
    explicit ScanTickScheduler(std::function<void()> tick);

    // Returns the seconds from one tick to the next at this progress, which is held within 0 to 1.
    [[nodiscard]] static double delayAfter(double progress);

    // Ticks at once and then until it is stopped. Starting anew replaces the pending tick.
    void start(std::function<double()> progress);
    // The same with the engine's progress.
    Q_INVOKABLE void start(larkspan::SortEngine *engine);
    Q_INVOKABLE void stop();
    [[nodiscard]] bool isRunning() const { return m_workItem.isActive(); }

private:
    void tick();

    std::function<void()> m_tick;
    std::function<double()> m_progress;
    QTimer m_workItem; // the tick now pending
};

} // namespace larkspan
