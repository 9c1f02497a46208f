#include "screens/bins/BinColors.h"

#include <gtest/gtest.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(BinColors, AreTheSameForANameEverywhereAndDark)
{
    // "AB": 65 × 31 + 66 = 2081 of 3600.
    const auto [first, second] = binGradientColors(u"AB"_s);
    EXPECT_NEAR(first.hsvHueF(), 2081.0 / 3600, 1e-4);
    EXPECT_NEAR(first.hsvSaturationF(), 0.22, 1e-4);
    EXPECT_NEAR(first.valueF(), 0.34, 1e-4);
    EXPECT_NEAR(second.hsvHueF(), 2081.0 / 3600, 1e-4);
    EXPECT_NEAR(second.hsvSaturationF(), 0.26, 1e-4);
    EXPECT_NEAR(second.valueF(), 0.14, 1e-4);
    EXPECT_NEAR(binGradientColors(QString()).first.hsvHueF(), 0.0, 1e-4);
    // One scalar beyond the basic plane, not two halves: 0x1F3E0 = 127968 is 1968 of 3600.
    EXPECT_NEAR(binGradientColors(u"\U0001F3E0"_s).first.hsvHueF(), 1968.0 / 3600, 1e-4);
}
