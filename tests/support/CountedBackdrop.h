#pragma once

#include <atomic>
#include <cmath>
#include <numbers>

#include "design/LKKineticGridCanvas.h"
#include "design/LKStarlightCanvas.h"
#include "tests/support/MallocCount.h"

namespace larkspan::test {

// A backdrop that counts what its own code asks malloc for, on whichever thread that runs; what Qt and the driver do
// around it doesn't count. The program links MallocCount.cpp.
template <typename Canvas>
class CountedBackdrop : public Canvas
{
public:
    [[nodiscard]] int frames() const { return m_frames; }
    [[nodiscard]] std::size_t mallocs() const { return m_mallocs; }
    void restart()
    {
        m_frames = 0;
        m_mallocs = 0;
    }

    // On the main thread, within the count.
    template <typename Work>
    auto counted(const Work &work)
    {
        const std::size_t before = mallocCountOfThisThread();
        const auto result = work();
        m_mallocs += mallocCountOfThisThread() - before;
        return result;
    }

protected:
    bool advance() override
    {
        return counted([this] { return Canvas::advance(); });
    }

    QSGNode *updatePaintNode(QSGNode *old, QQuickItem::UpdatePaintNodeData *data) override
    {
        ++m_frames;
        return counted([&] { return Canvas::updatePaintNode(old, data); });
    }

private:
    std::atomic<int> m_frames = 0;
    std::atomic<std::size_t> m_mallocs = 0;
};

// A pointer that runs in a circle, and so many clicks that about five ripples are under way at any time.
inline void stir(CountedBackdrop<LKKineticGridCanvas> &grid, int frame)
{
    constexpr int framesBetweenClicks = 10;
    constexpr double radiansPerFrame = 2 * std::numbers::pi / 100;
    const double angle = radiansPerFrame * frame;
    const QPointF middle(grid.width() / 2, grid.height() / 2);
    const QPointF pointer = middle + QPointF(std::cos(angle), std::sin(angle)) * (std::min(middle.x(), middle.y()) / 2);
    grid.counted([&] {
        grid.movePointer(pointer);
        if (frame % framesBetweenClicks == 0) {
            grid.click(pointer);
        }
        return true;
    });
}

} // namespace larkspan::test
