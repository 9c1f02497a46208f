// The desktop changes its colours, or the scale of its display, while the program is at work.
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

    ~DesktopChangesTest() override { Desktop::setScale(1); }

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

TEST_F(DesktopChangesTest, AChangeOfTheDisplaysScaleDuringASortIsFollowedAndTheSortGoesOn)
{
    startSorting();
    QQuickWindow &window = *program->window();
    const QSize size = window.size();
    ASSERT_EQ(window.grabWindow().size(), size);
    SortOptions options = engine().options();
    options.openEditorAfterExport = false;
    engine().setOptions(options);
    beginSort();
    Desktop::setScale(1.25);
    expectTheSortToEndWell();
    Desktop::click(shown(u"Export"_s));
    EXPECT_TRUE(reaches(StageKind::done)) << "what is shown is where it can be pressed";
    EXPECT_EQ(window.size(), size) << "as large in points as before";
    EXPECT_EQ(window.grabWindow().size(), (QSizeF(size) * 1.25).toSize()) << "and drawn as finely as it is shown";
    Desktop::setScale(1.0);
    EXPECT_TRUE(waitUntil([&] { return window.grabWindow().size() == size; }));
}

TEST_F(DesktopChangesTest, AWindowStaysWithinADisplayWhoseScaleGrows)
{
    start();
    QQuickWindow &window = *program->window();
    Desktop::setScale(1.5);
    const QRect area = window.screen()->availableGeometry();
    ASSERT_LT(area.width(), 1180) << "the display has no room for all of it";
    EXPECT_TRUE(waitUntil([&] { return window.geometry() == area; })) << testing::PrintToString(window.geometry());
}

TEST_F(DesktopChangesTest, AMaximizedWindowFillsADisplayWhoseScaleGrows)
{
    start();
    QQuickWindow &window = *program->window();
    window.showMaximized();
    ASSERT_TRUE(waitUntil([&] { return window.visibility() == QWindow::Maximized; }));
    Desktop::setScale(1.25);
    const QSize size = window.screen()->availableGeometry().size();
    EXPECT_TRUE(waitUntil([&] { return window.contentItem()->size() == QSizeF(size); }))
        << testing::PrintToString(window.contentItem()->size());
    EXPECT_EQ(window.visibility(), QWindow::Maximized);
}

TEST_F(DesktopChangesTest, AWindowsLeastSizeIsInPointsOfTheScaleThatTheDisplayHasNow)
{
    start();
    QQuickWindow &window = *program->window();
    const QSize size = window.size();
    Desktop::setScale(1.25);
    ASSERT_TRUE(waitUntil([&] { return window.contentItem()->size() == QSizeF(size) && window.size() == size; }));
    (void)shown(u"Open Binnacle"_s);
    const QPointF corner = QRectF(window.geometry()).bottomRight() - QPointF(2, 2);
    Desktop::drag((corner * 1.25).toPoint(), {300, 300});
    EXPECT_TRUE(waitUntil([&] { return window.contentItem()->size() == QSizeF(980, 640); }))
        << testing::PrintToString(window.contentItem()->size());
}
