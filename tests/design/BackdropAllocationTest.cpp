// A backdrop takes its memory once: frame after frame it asks for none.
#include "tests/support/CountedBackdrop.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

constexpr int warmUp = 150; // the pointer has been everywhere once, and as many ripples live as ever will
constexpr int measured = 300;

// In a window of its own, drawn by the display.
template <typename Canvas>
class CountedScene
{
public:
    CountedScene()
    {
        canvas.setParentItem(m_scene.root());
        canvas.setSize(m_scene.root()->size());
    }

    bool draws(int frames)
    {
        return waitUntil([&] { return canvas.frames() >= frames; });
    }
    QQuickWindow &window() { return m_scene.window(); }

private:
    Scene m_scene{"import QtQuick\nItem { anchors.fill: parent }", {}, {1180, 790}};

public:
    CountedBackdrop<Canvas> canvas; // goes before its window
};

} // namespace

TEST(BackdropMemory, TheGridUnderAMovingPointerAndFiveRipplesTakesNoneForAFrame)
{
    CountedScene<LKKineticGridCanvas> scene;
    int frame = 0;
    QObject::connect(&scene.window(), &QQuickWindow::afterAnimating, &scene.canvas,
                     [&] { stir(scene.canvas, frame++); });
    stir(scene.canvas, frame++);
    ASSERT_TRUE(scene.draws(warmUp));
    EXPECT_FALSE(scene.canvas.grid().ripples().empty());
    scene.canvas.restart();
    ASSERT_TRUE(scene.draws(measured));
    EXPECT_EQ(scene.canvas.mallocs(), 0U);
}

TEST(BackdropMemory, TheStarlightTakesNoneForAFrame)
{
    CountedScene<LKStarlightCanvas> scene;
    ASSERT_TRUE(scene.draws(warmUp));
    scene.canvas.restart();
    ASSERT_TRUE(scene.draws(measured));
    EXPECT_EQ(scene.canvas.mallocs(), 0U);
}

TEST(BackdropMemory, IsTakenWithTheFirstFrameAndSoIsCounted)
{
    CountedScene<LKStarlightCanvas> scene;
    ASSERT_TRUE(scene.draws(1));
    EXPECT_GT(scene.canvas.mallocs(), 0U);
}
