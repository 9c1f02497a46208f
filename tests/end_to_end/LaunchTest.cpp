// The program as it comes up when it is started.
#include "tests/end_to_end/ProgramWindow.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class LaunchTest : public ProgramWindow
{};

} // namespace

TEST_F(LaunchTest, StartsAtTheLauncherAlsoWithTheWishToReopenTheLastShoot)
{
    const TempFolder shoot;
    makeMedia(shoot / "clip.mp4",
              "-f lavfi -i color=c=gray:s=320x180:r=25:d=1 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
    startSorting();
    program->state().setReopenLastShoot(true);
    engine().sortFolder(FileUrl(shoot.path()));
    ASSERT_TRUE(reaches(StageKind::results));
    program.reset();

    start();
    (void)shown(u"Open Binnacle"_s);
    EXPECT_TRUE(program->state().reopenLastShoot());
    EXPECT_EQ(program->state().view(), AppState::ViewMode::Landing);
    EXPECT_EQ(engine().stage().kind, StageKind::empty);
    EXPECT_THAT(engine().clips(), IsEmpty());
    EXPECT_EQ(engine().folder(), std::nullopt);
    EXPECT_THAT(engine().projects(), SizeIs(1)); // it is there to be reopened from the switcher
}
