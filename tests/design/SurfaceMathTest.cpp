#include "design/SurfaceMath.h"

#include "design/LK.h"

using namespace larkspan;
using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(SpotlightCentre, IsTheMiddleOfTheCardWithoutAPointer)
{
    EXPECT_EQ(spotlightCentre(std::nullopt, {280, 180}), QPointF(0.5, 0.5));
}

TEST(SpotlightCentre, IsWhereThePointerIsInPartsOfTheCard)
{
    EXPECT_EQ(spotlightCentre(QPointF(70, 135), {280, 180}), QPointF(0.25, 0.75));
}

TEST(SpotlightCentre, StaysWithinTheCard)
{
    EXPECT_EQ(spotlightCentre(QPointF(-5, 200), {280, 180}), QPointF(0, 1));
    EXPECT_EQ(spotlightCentre(QPointF(1000, -1), {280, 180}), QPointF(1, 0));
}

TEST(SpotlightCentre, DividesByNothingSmallerThanAPoint)
{
    EXPECT_EQ(spotlightCentre(std::nullopt, {0, 0}), QPointF(0, 0));
    EXPECT_EQ(spotlightCentre(QPointF(0.25, 3), {0.5, 0}), QPointF(0.25, 1));
}

TEST(SpotlightRadius, IsAShareOfTheLongerSideAndNeverZero)
{
    EXPECT_DOUBLE_EQ(spotlightRadius({280, 180}), 0.62 * 280);
    EXPECT_DOUBLE_EQ(spotlightRadius({180, 281}), 0.62 * 281);
    EXPECT_DOUBLE_EQ(spotlightRadius({0, 0}), 0.62);
}

TEST(Mixed, GoesFromOneColourToTheOtherByComponentAndIsOpaque)
{
    const QColor accent = QColor::fromRgb(0x7A82FF);
    const QColor info = QColor::fromRgb(0x0A84FF);
    EXPECT_EQ(mixed(accent, info, 0).rgba(), accent.rgba());
    EXPECT_EQ(mixed(accent, info, 1).rgba(), info.rgba());
    EXPECT_EQ(mixed(accent, info, 0.5).rgba(), qRgb(0x42, 0x83, 0xFF));
    EXPECT_EQ(mixed(QColor::fromRgbF(1, 0, 0, 0.2f), info, 0).alphaF(), 1.0f);
}

TEST(Chevron, RunsFromTheMiddleOfTheLeftEdgeOutward)
{
    QVariantList expected;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            expected.append(90 * (column + std::abs(row - 1)));
        }
    }
    EXPECT_EQ(LKMotionScale().chevron, expected);
}

TEST(ElapsedText, IsInTenthsOfSecondsAndFromAMinuteOnInMinutesToo)
{
    EXPECT_EQ(elapsedText(0s), QStringLiteral("0.0s"));
    EXPECT_EQ(elapsedText(12340ms), QStringLiteral("12.3s"));
    EXPECT_EQ(elapsedText(125300ms), QStringLiteral("2m 5.3s"));
    EXPECT_EQ(elapsedText(7200s), QStringLiteral("120m 0.0s"));
}

TEST(ElapsedText, RoundsUpToSixtySecondsInTheShortFormatJustBeforeAMinute)
{
    EXPECT_EQ(elapsedText(59940ms), QStringLiteral("59.9s"));
    EXPECT_EQ(elapsedText(59960ms), QStringLiteral("60.0s"));
}

TEST(ElapsedText, ChangesToOneMinuteAndNoSecondsAtSixtySeconds)
{
    EXPECT_EQ(elapsedText(60s), QStringLiteral("1m 0.0s"));
}

TEST(ElapsedText, TakesATimeBelowZeroForZero)
{
    EXPECT_EQ(elapsedText(-3s), QStringLiteral("0.0s"));
}
