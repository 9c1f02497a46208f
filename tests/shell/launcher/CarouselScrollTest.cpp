#include <cmath>

#include "shell/launcher/CarouselScroll.h"

using namespace larkspan;
using testing::ElementsAre;
using testing::IsEmpty;
using Phase = CarouselScroll::Phase;

namespace {

class CarouselScrollTest : public testing::Test
{
protected:
    std::vector<double> drifts;
    std::vector<int> commits;
    int cancels = 0;
    CarouselScroll scroll{{.onDrift = [this](double offset) { drifts.push_back(offset); },
                           .onCommit = [this](int direction) { commits.push_back(direction); },
                           .onCancel = [this] { ++cancels; }}};

    bool send(Phase phase, double x = 0.0, double y = 0.0, double seconds = 0.0)
    {
        return scroll.handle({phase, x, y, seconds});
    }
};

} // namespace

TEST_F(CarouselScrollTest, ASwipeIsPassedOnUntilItIsHorizontalByMoreThanTheAxisLock)
{
    EXPECT_FALSE(send(Phase::Began));
    EXPECT_FALSE(send(Phase::Changed, 8, 0)); // not more than eight
    EXPECT_TRUE(send(Phase::Changed, 0.5, 0));
    EXPECT_THAT(drifts, ElementsAre(8.5));
}

TEST_F(CarouselScrollTest, AVerticalSwipeNeverEngagesWhileItStaysMoreVertical)
{
    EXPECT_FALSE(send(Phase::Began, 0, 20));
    for (int i = 0; i < 50; ++i) {
        EXPECT_FALSE(send(Phase::Changed, 5, 5)); // always twenty behind
    }
    EXPECT_FALSE(send(Phase::Changed, 0, 3));
    EXPECT_TRUE(send(Phase::Ended));
    EXPECT_THAT(drifts, IsEmpty());
    EXPECT_THAT(commits, IsEmpty());
    EXPECT_EQ(cancels, 0);
}

TEST_F(CarouselScrollTest, AFastFlickCommitsOneCardHoweverFarItGoesAndItsMomentumIsSwallowed)
{
    EXPECT_TRUE(send(Phase::Began, -30, 2));
    EXPECT_TRUE(send(Phase::Changed, -40, 1));
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(send(Phase::Changed, -80, 30));
    }
    EXPECT_TRUE(send(Phase::Ended));
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(send(Phase::Momentum, -60, 0));
    }
    EXPECT_THAT(commits, ElementsAre(1));
    EXPECT_THAT(drifts, ElementsAre(-30));
    EXPECT_EQ(cancels, 0);
}

TEST_F(CarouselScrollTest, ASwipeOfFortyPointsDriftsAndSpringsBack)
{
    (void)send(Phase::Began, 15, 0);
    (void)send(Phase::Changed, 25, 0);
    EXPECT_TRUE(send(Phase::Ended));
    EXPECT_THAT(drifts, ElementsAre(15, 40));
    EXPECT_THAT(commits, IsEmpty());
    EXPECT_EQ(cancels, 1);
}

TEST_F(CarouselScrollTest, SixtyPointsCommitAndToTheRightMeansTheCardBefore)
{
    (void)send(Phase::Began, 59.9, 0);
    EXPECT_THAT(commits, IsEmpty());
    (void)send(Phase::Changed, 0.1, 0);
    EXPECT_THAT(commits, ElementsAre(-1));
    EXPECT_TRUE(send(Phase::Cancelled));
    EXPECT_EQ(cancels, 0);
}

TEST_F(CarouselScrollTest, ACancelledSwipeSpringsBackToo)
{
    (void)send(Phase::Began, 20, 0);
    EXPECT_TRUE(send(Phase::Cancelled));
    EXPECT_EQ(cancels, 1);
}

TEST_F(CarouselScrollTest, AGestureThatBeganElsewhereIsTakenUpFromWhereItIs)
{
    EXPECT_TRUE(send(Phase::Changed, 20, 0));
    EXPECT_TRUE(send(Phase::Ended));
    EXPECT_THAT(drifts, ElementsAre(20));
    EXPECT_EQ(cancels, 1);
}

TEST_F(CarouselScrollTest, AnEndWithoutAGestureIsPassedOn)
{
    EXPECT_FALSE(send(Phase::Ended));
    EXPECT_FALSE(send(Phase::Cancelled));
    EXPECT_EQ(cancels, 0);
}

TEST_F(CarouselScrollTest, ANewGestureStartsFromNothing)
{
    (void)send(Phase::Began, -100, 0);
    (void)send(Phase::Ended);
    (void)send(Phase::Began, -20, 0);
    (void)send(Phase::Changed, -20, 0);
    EXPECT_THAT(commits, ElementsAre(1));
    EXPECT_THAT(drifts, ElementsAre(-20, -40));
    (void)send(Phase::Changed, -20, 0);
    EXPECT_THAT(commits, ElementsAre(1, 1));
}

TEST_F(CarouselScrollTest, TwoWheelNotchesAFifthOfASecondApartStepOnceAndBothAreSwallowed)
{
    EXPECT_TRUE(send(Phase::None, -1, 0, 10.0));
    EXPECT_TRUE(send(Phase::None, -1, 0, 10.2));
    EXPECT_THAT(commits, ElementsAre(1));
    EXPECT_TRUE(send(Phase::None, 1, 0, 10.33));
    EXPECT_THAT(commits, ElementsAre(1, -1));
}

TEST_F(CarouselScrollTest, TheGapBetweenNotchesMustBeExceeded)
{
    (void)send(Phase::None, -1, 0, 0.0);
    (void)send(Phase::None, -1, 0, 0.32);
    EXPECT_THAT(commits, ElementsAre(1));
    (void)send(Phase::None, -1, 0, 0.33);
    EXPECT_THAT(commits, ElementsAre(1, 1));
}

TEST_F(CarouselScrollTest, AWheelThatTurnsVerticallyOrLittleIsPassedOn)
{
    EXPECT_FALSE(send(Phase::None, 0, 3));
    EXPECT_FALSE(send(Phase::None, 2, 2));
    EXPECT_FALSE(send(Phase::None, 0.5, 0));
    EXPECT_FALSE(send(Phase::None, NAN, 0));
    EXPECT_FALSE(send(Phase::None, 0, 0));
    EXPECT_THAT(commits, IsEmpty());
}

TEST_F(CarouselScrollTest, TimeThatJumpsBackNeverStepsTwiceForIt)
{
    (void)send(Phase::None, -1, 0, 1000.0);
    EXPECT_TRUE(send(Phase::None, -1, 0, 1.0));
    EXPECT_THAT(commits, ElementsAre(1));
}

TEST_F(CarouselScrollTest, TwoDevicesAtOnceLeaveNoDriftStanding)
{
    (void)send(Phase::Began, 30, 0);   // fingers
    (void)send(Phase::None, -1, 0, 5); // a wheel
    EXPECT_THAT(commits, ElementsAre(1));
    (void)send(Phase::Began, 0, 2); // other fingers
    EXPECT_EQ(cancels, 1);
    (void)send(Phase::Ended);
    EXPECT_FALSE(send(Phase::Ended));
    EXPECT_EQ(cancels, 1);
}

TEST(CarouselScroll, PassesEverythingOnWhereNobodyListens)
{
    CarouselScroll scroll({});
    for (const Phase phase : {Phase::None, Phase::Began, Phase::Changed, Phase::Ended, Phase::Momentum}) {
        EXPECT_FALSE(scroll.handle({phase, -100, 0, 0}));
    }
}
