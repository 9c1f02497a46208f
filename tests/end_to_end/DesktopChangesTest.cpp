// The desktop changes its colours, or the scale of its display, while the program is at work.
#include <QtGui/private/qhighdpiscaling_p.h>
#include <QtGui/QScreen>

#include "tests/end_to_end/ProgramWindow.h"
#include "tests/shell/DesktopPortal.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

class DesktopChangesTest : public ProgramWindow
{
protected:
    static constexpr std::size_t count = 20;

    DesktopChangesTest()
    {
        const fs::path clip = shoot / "clip 0.mp4";
        makeMedia(clip,
                  "-f lavfi -i color=c=gray:s=1920x1080:r=25:d=4 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
        for (std::size_t i = 1; i < count; ++i) {
            fs::create_hard_link(clip, shoot / ("clip " + std::to_string(i) + ".mp4"));
        }
    }

    // Returns while the sort is seen to run.
    void beginSort()
    {
        engine().sortFolder(FileUrl(shoot.path()));
        (void)shown(u"Cancel"_s);
    }

    void expectTheSortToEndWell()
    {
        EXPECT_EQ(engine().stage().kind, StageKind::working);
        ASSERT_TRUE(reaches(StageKind::results));
        EXPECT_THAT(engine().clips(), SizeIs(count));
    }

    const TempFolder shoot;
};

} // namespace

TEST_F(DesktopChangesTest, AChangeOfTheDesktopsColoursDuringASortIsFollowedAndTheSortGoesOn)
{
    DesktopPortal portal(DesktopPortal::Dark);
    startSorting();
    program->state().setAppearance(LK::Appearance::FollowSystem);
    ASSERT_EQ(program->state().theme(), LK::Theme::Dark);
    beginSort();
    portal.change(DesktopPortal::Light);
    ASSERT_TRUE(waitUntil([&] { return LK::instance().theme() == LK::Theme::Light; }));
    expectTheSortToEndWell();
    const QColor corner = program->window()->grabWindow().pixelColor(300, 780);
    EXPECT_GT(corner.lightness(), 200) << "the window is drawn in the light palette";
    program->state().setAppearance(LK::Appearance::AlwaysDark);
}

// A display's scale can't be changed under a virtual one, so Qt is told of it as its platform's part would.
TEST_F(DesktopChangesTest, AChangeOfTheDisplaysScaleDuringASortIsFollowedAndTheSortGoesOn)
{
    startSorting();
    QQuickWindow &window = *program->window();
    const QSize size = window.size();
    ASSERT_EQ(window.grabWindow().size(), size);
    beginSort();
    QHighDpiScaling::setScreenFactor(window.screen(), 1.25);
    EXPECT_TRUE(waitUntil([&] { return window.effectiveDevicePixelRatio() == 1.25; }));
    expectTheSortToEndWell();
    (void)shown(u"Export"_s);
    EXPECT_EQ(window.grabWindow().size(), window.size() * 1.25) << "the window is drawn as finely as it is shown";
    QHighDpiScaling::setScreenFactor(window.screen(), 1.0);
    EXPECT_TRUE(waitUntil([&] { return window.effectiveDevicePixelRatio() == 1.0; }));
}
