#pragma once

#include <functional>
#include <utility>

#include <QtCore/QAbstractAnimation>

namespace larkspan {

// Calls back once for each frame of the display while it runs, in step with the animations around it. Main thread.
class FrameTicks : public QAbstractAnimation
{
    Q_OBJECT

public:
    explicit FrameTicks(std::function<void()> tick) : m_tick(std::move(tick)) {}
    [[nodiscard]] int duration() const override { return -1; }

protected:
    void updateCurrentTime(int) override { m_tick(); }

private:
    const std::function<void()> m_tick;
};

} // namespace larkspan
