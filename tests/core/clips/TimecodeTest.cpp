#include "core/clips/Timecode.h"

#include <gmock/gmock.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(FrameRate, TheNearestCountedRateIsTakenWhetherWholeOrOver1001)
{
    EXPECT_EQ(FrameRate::nearest(23.976), (FrameRate{.counted = 24, .isOver1001 = true}));
    EXPECT_EQ(FrameRate::nearest(24.0), (FrameRate{.counted = 24, .isOver1001 = false}));
    EXPECT_EQ(FrameRate::nearest(29.97), (FrameRate{.counted = 30, .isOver1001 = true}));
    EXPECT_EQ(FrameRate::nearest(30.02), (FrameRate{.counted = 30, .isOver1001 = false}));
    EXPECT_EQ(FrameRate::nearest(119.88), (FrameRate{.counted = 120, .isOver1001 = true}));
    EXPECT_EQ(FrameRate::nearest(0.0), std::nullopt);
    EXPECT_EQ(FrameRate::nearest(-25.0), std::nullopt);
    EXPECT_EQ(FrameRate::nearest(1e9), std::nullopt);
    EXPECT_EQ(FrameRate::nearest(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(FrameRate, HalfAFrameToAThousandASecondAreRates)
{
    EXPECT_TRUE(FrameRate::nearest(0.5));
    EXPECT_TRUE(FrameRate::nearest(1000.0));
    EXPECT_EQ(FrameRate::nearest(0.49), std::nullopt);
    EXPECT_EQ(FrameRate::nearest(1000.5), std::nullopt);
}

TEST(Timecode, TheLastFrameOfTheDayIsATime)
{
    EXPECT_EQ(Timecode::parsed(u"23:59:59:24"_s, 25),
              (Timecode{.frame = 24 * 3600 * 25 - 1, .rate = {.counted = 25, .isOver1001 = false}}));
}

TEST(Timecode, TextThatIsNoTimeOfDayAtItsRateIsNone)
{
    for (const auto &text :
         {u""_s, u"1:2:3:4"_s, u"24:00:00:00"_s, u"00:60:00:00"_s, u"00:00:60:00"_s, u"00:00:00:25"_s, u"00:00:00"_s,
          u"-1:00:00:00"_s, u"00:00:00:00:00"_s, u"aa:bb:cc:dd"_s}) {
        EXPECT_EQ(Timecode::parsed(text, 25), std::nullopt) << text.toStdString();
    }
    EXPECT_EQ(Timecode::parsed(u"00:01:00;01"_s, 29.97), std::nullopt) << "a number that drop frame skips";
    EXPECT_EQ(Timecode::parsed(u"00:00:00:00"_s, 0), std::nullopt);
}

TEST(Timecode, OnlyRatesThatDropFramesKnowDropFrame)
{
    EXPECT_FALSE(Timecode::parsed(u"01:00:00;00"_s, 25)->isDropFrame);
    EXPECT_FALSE(Timecode::parsed(u"01:00:00:00"_s, 29.97)->isDropFrame);
    EXPECT_TRUE(Timecode::parsed(u"01:00:00.00"_s, 59.94)->isDropFrame);
}

TEST(Timecode, ItsSecondsStandOverTheClipsScaleWhereThatIsExact)
{
    const Timecode hour = *Timecode::parsed(u"01:00:00:00"_s, 29.97);
    EXPECT_EQ(hour.rationalTime(30'000), u"108108000/30000s"_s);
    EXPECT_EQ(hour.rationalTime(60'000), u"216216000/60000s"_s);
    EXPECT_EQ(hour.rationalTime(25), u"90090/25s"_s);
    EXPECT_EQ(Timecode::parsed(u"01:00:00:00"_s, 25)->rationalTime(1), u"3600/1s"_s);
    EXPECT_EQ(Timecode::parsed(u"00:00:00:01"_s, 29.97)->rationalTime(25), u"1001/30000s"_s);
    EXPECT_EQ(hour.rationalTime(0), u"108108000/30000s"_s);
    EXPECT_EQ(hour.rationalTime(std::numeric_limits<std::int32_t>::max()), u"108108000/30000s"_s);
    EXPECT_EQ(Timecode::parsed(u"00:00:00:00"_s, 25)->rationalTime(25), u"0s"_s);
}

// Drop frame numbers every frame of the day once: the next frame has the next number that isn't skipped.
RC_GTEST_PROP(TimecodeProperty, FramesOfADropFrameDayFollowOneAnother, ())
{
    const int counted = *rc::gen::element(30, 60);
    const int minute = *rc::gen::inRange(0, 24 * 60 - 1);
    const auto at = [&](int minutes, int seconds, int frames) {
        const QString text = u"%1:%2:%3;%4"_s.arg(minutes / 60, 2, 10, QLatin1Char('0'))
                                 .arg(minutes % 60, 2, 10, QLatin1Char('0'))
                                 .arg(seconds, 2, 10, QLatin1Char('0'))
                                 .arg(frames, 2, 10, QLatin1Char('0'));
        return Timecode::parsed(text, counted / 1.001);
    };
    const int firstOfNext = (minute + 1) % 10 == 0 ? 0 : counted / 15;
    RC_ASSERT(at(minute, 59, counted - 1).has_value());
    RC_ASSERT(at(minute, 59, counted - 1)->frame + 1 == at(minute + 1, 0, firstOfNext)->frame);
}

TEST(Timecode, ANumberOfFramesReadsAsHoursMinutesSecondsAndFrames)
{
    EXPECT_EQ(timecodeText(0, {.counted = 25, .isOver1001 = false}), u"00:00:00:00"_s);
    EXPECT_EQ(timecodeText(24 * 3723 + 4, {.counted = 24, .isOver1001 = true}), u"01:02:03:04"_s);
    EXPECT_EQ(timecodeText(24 * 3600 - 1, {.counted = 24, .isOver1001 = true}), u"00:59:59:23"_s);
    EXPECT_EQ(timecodeText(24 * 3600, {.counted = 24, .isOver1001 = true}), u"01:00:00:00"_s);
}
