#pragma once

#include <atomic>
#include <cstddef>
#include <ctime>
#include <vector>

#include <QtCore/QObject>
#include <QtQuick/QQuickWindow>

namespace larkspan::bench {

// The cost of one frame, from one swap to the next: processor time in milliseconds by thread, and allocations.
struct FrameCost
{
    double main = 0;        // the thread of the event loop
    double render = 0;      // the thread of the scene graph; 0 where that is the same
    double process = 0;     // everything, the threads of a software rasterizer included
    double allocations = 0; // on the main and the render thread, the graphics driver's included
};

// Notes the cost of every frame that a window draws. Threads are told apart by their own processor clocks: a software
// rasterizer works on threads that are neither of ours. Noting a frame allocates nothing.
class FrameClock : public QObject
{
    Q_OBJECT

public:
    // Room for so many frames; later ones aren't noted. Made on the main thread, and outlives the window's drawing.
    FrameClock(QQuickWindow &window, std::size_t frames);

    // Frames drawn since the last restart, noted or not.
    [[nodiscard]] std::size_t count() const { return m_count; }
    void restart() { m_count = 0; }
    // Returns the costs of the noted frames. Call it while none is drawn.
    [[nodiscard]] std::vector<FrameCost> costs() const;

private:
    struct Mark
    {
        double main;
        double render;
        double process;
        std::size_t allocations;
    };

    void note(); // on the render thread

    clockid_t m_mainClock{};
    std::vector<Mark> m_marks;
    std::atomic<std::size_t> m_count = 0;
};

// Processor milliseconds of the whole process so far.
[[nodiscard]] double processMilliseconds();

} // namespace larkspan::bench
