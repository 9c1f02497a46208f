#include "output/CopyMeter.h"

#include <gmock/gmock.h>

#include "output/FileCopy.h"
#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// A meter on a clock that is set by hand.
class CopyMeterTest : public testing::Test
{
protected:
    CopyMeter meterOf(std::int64_t total, bool verifies)
    {
        return {total, verifies, [this](const CopyProgress &progress) { told.push_back(progress); },
                [this] { return now; }};
    }

    CopyMeter::Clock::time_point now;
    std::vector<CopyProgress> told;
};

} // namespace

TEST_F(CopyMeterTest, TellsTheTwoPhasesApart)
{
    CopyMeter meter = meterOf(1000, true);
    meter.beginFile(400);
    now += 1s;
    meter.advance(400);
    now += 1s; // the sync
    meter.enter(CopyPhase::verifying);
    now += 500ms;
    meter.advance(300);
    EXPECT_EQ(meter.progress(), (CopyProgress{.phase = CopyPhase::verifying,
                                              .verifies = true,
                                              .totalBytes = 1000,
                                              .copiedBytes = 400,
                                              .verifiedBytes = 300,
                                              .copyingSeconds = 2.0,
                                              .verifyingSeconds = 0.5}));
    EXPECT_EQ(told.back(), meter.progress());
}

TEST_F(CopyMeterTest, AFileThatIsThroughCountsWholeHoweverItWent)
{
    CopyMeter meter = meterOf(1000, true);
    meter.beginFile(400); // failed at once
    meter.endFile();
    EXPECT_EQ(meter.progress().copiedBytes, 400);
    EXPECT_EQ(meter.progress().verifiedBytes, 400);
    meter.beginFile(600);
    meter.advance(1000); // has grown
    EXPECT_EQ(meter.progress().copiedBytes, 1000);
}

TEST_F(CopyMeterTest, WithoutVerificationNothingCountsAsVerified)
{
    CopyMeter meter = meterOf(100, false);
    meter.beginFile(100);
    meter.endFile();
    EXPECT_EQ(meter.progress().copiedBytes, 100);
    EXPECT_EQ(meter.progress().verifiedBytes, 0);
}

TEST_F(CopyMeterTest, TellsNoOftenerThanIsSeen)
{
    CopyMeter meter = meterOf(1000, false);
    meter.beginFile(1000);
    meter.advance(10);
    now += CopyMeter::interval - 1ms;
    meter.advance(10);
    EXPECT_THAT(told, IsEmpty());
    now += 1ms;
    meter.advance(10);
    meter.advance(10);
    EXPECT_THAT(told, SizeIs(1));
}

TEST_F(CopyMeterTest, WhatIsReadAfterTheLastFileDoesNotCount)
{
    CopyMeter meter = meterOf(100, true);
    meter.beginFile(100);
    meter.endFile();
    now += 5s;
    meter.enter(CopyPhase::verifying);
    meter.advance(100);
    meter.endFile();
    EXPECT_EQ(meter.progress().verifiedBytes, 100);
    EXPECT_EQ(meter.progress().verifyingSeconds, 0.0);
}

TEST(CopyProgress, OfARealCopyEndsWithAllBytesInBothPhases)
{
    const TempFolder folder;
    const std::size_t size = 9 * 1024 * 1024 + 5;
    std::vector<FileUrl> urls;
    for (unsigned i = 0; i < 3; ++i) {
        urls.emplace_back(folder.write("card/" + std::to_string(i) + ".mov", footage(i, size)));
    }
    std::vector<CopyProgress> told;
    // A clock that leaps, so that every step is told.
    CopyMeter::Clock::time_point now;
    const auto leap = [&now] { return now += CopyMeter::interval; };
    CopyMeter meter(
        static_cast<std::int64_t>(3 * size), true, [&told](const CopyProgress &progress) { told.push_back(progress); },
        leap);
    FileCopier copier(FileOperations::system(), &meter);
    auto destination = DestinationFolder::open(folder / "shoot", FileOperations::system());
    ASSERT_TRUE(destination);
    for (const FileUrl &url : urls) {
        meter.beginFile(static_cast<std::int64_t>(size));
        ASSERT_TRUE(copier.copy(url.path(), *destination, Comparison::bytes));
        meter.endFile();
    }
    EXPECT_EQ(told.back().copiedBytes, static_cast<std::int64_t>(3 * size));
    EXPECT_EQ(told.back().verifiedBytes, static_cast<std::int64_t>(3 * size));
    EXPECT_TRUE(std::ranges::is_sorted(told, {}, &CopyProgress::copiedBytes));
    EXPECT_TRUE(std::ranges::is_sorted(told, {}, &CopyProgress::verifiedBytes));
    EXPECT_GT(std::ranges::count(told, CopyPhase::verifying, &CopyProgress::phase), 3);
}
