#include "screens/clips/DurationText.h"

#include <gtest/gtest.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(DurationText, ReadsAsMinutesAndSecondsOrHours)
{
    EXPECT_EQ(durationText(0), u"0:00"_s);
    EXPECT_EQ(durationText(7.4), u"0:07"_s);
    EXPECT_EQ(durationText(59.6), u"1:00"_s);
    EXPECT_EQ(durationText(725), u"12:05"_s);
    EXPECT_EQ(durationText(3723), u"1:02:03"_s);
    EXPECT_EQ(durationText(-5), u"0:00"_s);
    EXPECT_EQ(durationText(std::numeric_limits<double>::quiet_NaN()), u"0:00"_s);
}
