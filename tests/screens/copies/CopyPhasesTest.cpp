#include "screens/copies/CopyPhases.h"

#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::int64_t gigabyte = 1'000'000'000;

class CopyPhasesTest : public ModelTest
{
protected:
    CopyPhasesTest() { phases.setEngine(&engine); }

    void showProgress(const CopyProgress &progress) { engine.copyHistory()->setProgress(progress); }

    CopyPhases phases;
};

} // namespace

TEST_F(CopyPhasesTest, HaveNoFiguresWithoutACopy)
{
    EXPECT_FALSE(phases.isRunning());
    EXPECT_FALSE(phases.isVerifying());
    EXPECT_EQ(phases.copied(), u"–"_s);
    EXPECT_EQ(phases.verified(), u"–"_s);
    EXPECT_EQ(phases.timeLeft(), u"–"_s);
}

TEST_F(CopyPhasesTest, TellAmountAndSpeedOfEachAndTheTimeLeft)
{
    showProgress({.phase = CopyPhase::verifying,
                  .verifies = true,
                  .totalBytes = 12 * gigabyte,
                  .copiedBytes = 3 * gigabyte,
                  .verifiedBytes = 2 * gigabyte,
                  .copyingSeconds = 15.0,
                  .verifyingSeconds = 5.03});
    EXPECT_TRUE(phases.isRunning());
    EXPECT_TRUE(phases.isVerifying());
    EXPECT_EQ(phases.copied(), u"3 GB of 12 GB · 200 MB/s"_s);
    EXPECT_EQ(phases.verified(), u"2 GB of 12 GB · 398 MB/s"_s);
    EXPECT_EQ(phases.timeLeft(), u"about 1 minute"_s); // 45 s and 25 s
}

TEST_F(CopyPhasesTest, WithoutVerificationSayThatSizesAloneAreCompared)
{
    showProgress({.totalBytes = 8 * gigabyte, .copiedBytes = gigabyte, .copyingSeconds = 60.0});
    EXPECT_EQ(phases.copied(), u"1 GB of 8 GB · 17 MB/s"_s);
    EXPECT_EQ(phases.verified(), u"by size only"_s);
    EXPECT_EQ(phases.timeLeft(), u"about 7 minutes"_s);
}

TEST_F(CopyPhasesTest, FollowTheEngine)
{
    int changes = 0;
    QObject::connect(&phases, &CopyPhases::changed, &phases, [&changes] { ++changes; });
    showProgress({.totalBytes = 4, .copiedBytes = 2});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(phases.copied(), u"2 bytes of 4 bytes"_s); // in no time
    engine.copyHistory()->setProgress(std::nullopt);
    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(phases.isRunning());
}

TEST_F(CopyPhasesTest, TellNoTimeBeforeASpeedIsKnown)
{
    EXPECT_EQ(CopyPhases::secondsLeft({.totalBytes = 100, .copyingSeconds = 9.0}), std::nullopt);
    EXPECT_EQ(CopyPhases::secondsLeft({.totalBytes = 100, .copiedBytes = 50, .copyingSeconds = 0.9}), std::nullopt);
    EXPECT_EQ(CopyPhases::secondsLeft({.totalBytes = 100, .copiedBytes = 50, .copyingSeconds = 2.0}), 2.0);
    // Verifying is first taken to go as fast as copying.
    EXPECT_EQ(CopyPhases::secondsLeft({.verifies = true, .totalBytes = 100, .copiedBytes = 50, .copyingSeconds = 2.0}),
              2.0 + 4.0);
    EXPECT_EQ(CopyPhases::secondsLeft({.verifies = true,
                                       .totalBytes = 100,
                                       .copiedBytes = 50,
                                       .verifiedBytes = 25,
                                       .copyingSeconds = 2.0,
                                       .verifyingSeconds = 3.0}),
              2.0 + 9.0);
}

TEST_F(CopyPhasesTest, TellTimesRoughly)
{
    for (const auto &[seconds, text] : {std::pair{0.0, u"under a minute"_s},
                                        {29.0, u"under a minute"_s},
                                        {31.0, u"about 1 minute"_s},
                                        {100.0, u"about 2 minutes"_s},
                                        {59.0 * 60, u"about 59 minutes"_s},
                                        {3600.0, u"about 1 hour"_s},
                                        {3661.0, u"about 1 hour 1 minute"_s},
                                        {9000.0, u"about 2 hours 30 minutes"_s}}) {
        EXPECT_EQ(CopyPhases::roughly(seconds), text);
    }
}
