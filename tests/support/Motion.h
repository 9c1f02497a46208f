#pragma once

#include <atomic>

#include <QtQuick/QQuickWindow>

namespace larkspan::test {

// Returns the number of animations on this thread: QML's, its timers among them, and ours. Without one, no frame is
// drawn unless something asks for it.
[[nodiscard]] int runningAnimations();
// The same without the timers of QML below an object, which run and move nothing.
[[nodiscard]] int movingAnimations(const QObject &root);
// Lets the event loop run until there is none. False when some never end.
[[nodiscard]] bool comesToRest();

// Counts what a window draws, wherever it is drawn from. Goes before the window.
class FrameCount
{
public:
    explicit FrameCount(QQuickWindow &window);
    ~FrameCount() { QObject::disconnect(m_connection); }
    FrameCount(const FrameCount &) = delete;
    FrameCount &operator=(const FrameCount &) = delete;

    [[nodiscard]] int drawn() const { return m_drawn; }
    // A few more, which nobody asked for. False when none come.
    [[nodiscard]] bool keepComing() const;

private:
    std::atomic<int> m_drawn = 0;
    QMetaObject::Connection m_connection;
};

} // namespace larkspan::test
