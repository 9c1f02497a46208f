#include "shell/launcher/Carousel.h"
#include "tests/shell/launcher/LauncherState.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

class CarouselTest : public testing::Test
{
protected:
    CarouselTest() { carousel.setProperty("app", QVariant::fromValue(&app)); }

    LauncherState state;
    AppState &app = state.app;
    Carousel carousel;
};

} // namespace

TEST_F(CarouselTest, StepsFromCardToCardAndNotPastEitherEnd)
{
    carousel.step(-1);
    EXPECT_EQ(app.toolIndex(), 0);
    for (const int index : {1, 2, 3, 3}) {
        carousel.step(1);
        EXPECT_EQ(app.toolIndex(), index);
    }
    carousel.show(1);
    EXPECT_EQ(app.toolIndex(), 1);
    carousel.show(7);
    EXPECT_EQ(app.toolIndex(), 1);
}

TEST_F(CarouselTest, ADragFollowsTheHandAndIsHeldBackWhereThereIsNoCard)
{
    carousel.drag(-50);
    EXPECT_EQ(app.dragX(), -50);
    EXPECT_FALSE(carousel.isAnimated());
    carousel.drag(50);
    EXPECT_DOUBLE_EQ(app.dragX(), 15);
    carousel.show(3);
    carousel.drag(-50);
    EXPECT_DOUBLE_EQ(app.dragX(), -15);
    carousel.drag(50);
    EXPECT_EQ(app.dragX(), 50);
    carousel.show(1);
    carousel.drag(50);
    EXPECT_EQ(app.dragX(), 50);
}

TEST_F(CarouselTest, ADragOfExactlyTheThresholdStepsNothing)
{
    carousel.show(1);
    for (const double exactly : {110.0, -110.0}) {
        carousel.drag(exactly);
        carousel.endDrag(exactly);
        EXPECT_EQ(app.toolIndex(), 1);
        EXPECT_EQ(app.dragX(), 0);
    }
    carousel.endDrag(-110.5);
    EXPECT_EQ(app.toolIndex(), 2);
    carousel.endDrag(110.5);
    EXPECT_EQ(app.toolIndex(), 1);
    EXPECT_TRUE(carousel.isAnimated());
}

TEST_F(CarouselTest, AtTheLastToolASwipeOnDriftsLessAndItsCommitOnlySpringsBack)
{
    carousel.show(3);
    carousel.drag(-40);
    EXPECT_DOUBLE_EQ(app.dragX(), -12);
    carousel.commit(1);
    EXPECT_EQ(app.toolIndex(), 3);
    EXPECT_EQ(app.dragX(), 0);
    EXPECT_TRUE(carousel.isAnimated());
}

TEST_F(CarouselTest, ACancelledSwipeSpringsBack)
{
    carousel.drag(-40);
    carousel.cancel();
    EXPECT_EQ(app.dragX(), 0);
    EXPECT_EQ(app.toolIndex(), 0);
}
