#pragma once

#include <atomic>
#include <functional>
#include <set>

#include "tests/output/DeviceTree.h"
#include "tests/shell/pictures/SampleShoot.h"
#include "tests/shell/ShellWindow.h"

namespace larkspan::test {

// Before the window's fixture, which hands them on.
struct SampleWorld
{
    SampleWorld() { tree.addCardReader("8:17"); }

    DeviceTree tree;
    const TempFolder world;
    const std::filesystem::path mounts = world.write("mounts");
    Gate sampling;
    std::atomic<bool> isHeldBack = false;
};

// Every screen and overlay of the program with a real shoot in it, at the sizes that a window has: nothing lies over
// something else, is cut short or falls out of the window. LARKSPAN_PICTURES=FOLDER keeps what is shown, in both
// themes.
class ScreenPictures : protected SampleWorld, public ShellWindowTest
{
protected:
    ScreenPictures();
    ~ScreenPictures() override;

    // Shows the window where the display has room for the largest.
    void openInCorner();
    // The same, with the launcher in it.
    void openLauncher();

    // A folder of the sample's clips, as an editor names a shoot.
    void makeShoot();
    [[nodiscard]] FileUrl maple() const { return FileUrl(world / "2026-11-20 Maple Street 14"); }
    // Makes the shoot and sorts it.
    void sortSample();
    void sortWhatIsMade();
    [[nodiscard]] ClipPtr clipNamed(const QString &name) const;
    // Leaves other shoots that were sorted before.
    void saveProjects();

    // The window at each of its sizes, at rest: looked through, and kept if pictures are wanted. What the pointer does
    // there is done anew at each size.
    void picture(const QString &name, const std::function<void()> &hand = {});

    // Names by people that may be too long for their places.
    std::set<QString> mayBeElided;

private:
    void useSample(SortSeams &parts);
    void countFrames();
    bool rests();
    void keep(const QString &name, QSize size);

    int m_frames = 0;
};

} // namespace larkspan::test
