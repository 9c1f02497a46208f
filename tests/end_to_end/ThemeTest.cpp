// The desktop changes its colours while the program is at work.
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

class ThemeTest : public ProgramWindow
{};

} // namespace

TEST_F(ThemeTest, AChangeOfTheDesktopsColoursDuringASortIsFollowedAndTheSortGoesOn)
{
    constexpr std::size_t count = 20;
    const TempFolder shoot;
    const fs::path clip = shoot / "clip 0.mp4";
    makeMedia(clip, "-f lavfi -i color=c=gray:s=1920x1080:r=25:d=4 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
    for (std::size_t i = 1; i < count; ++i) {
        fs::create_hard_link(clip, shoot / ("clip " + std::to_string(i) + ".mp4"));
    }
    DesktopPortal portal(DesktopPortal::Dark);
    startSorting();
    program->state().setAppearance(LK::Appearance::FollowSystem);
    ASSERT_EQ(program->state().theme(), LK::Theme::Dark);
    engine().sortFolder(FileUrl(shoot.path()));
    (void)shown(u"Cancel"_s);
    portal.change(DesktopPortal::Light);
    ASSERT_TRUE(waitUntil([&] { return LK::instance().theme() == LK::Theme::Light; }));
    EXPECT_EQ(engine().stage().kind, StageKind::working);
    ASSERT_TRUE(reaches(StageKind::results));
    EXPECT_THAT(engine().clips(), SizeIs(count));
    const QColor corner = program->window()->grabWindow().pixelColor(300, 780);
    EXPECT_GT(corner.lightness(), 200) << "the window is drawn in the light palette";
    program->state().setAppearance(LK::Appearance::AlwaysDark);
}
