#include "bench/Accuracy.h"

#include <gmock/gmock.h>

using namespace larkspan::bench;
using namespace Qt::Literals::StringLiterals;

namespace {

Filed sure(const QString &bin, const QString &filed, const QString &alternative = {})
{
    return {.bin = bin, .alternative = alternative, .filed = filed, .confidence = 0.9};
}

Filed unsure(const QString &bin, const QString &filed)
{
    return {.bin = bin, .filed = filed, .confidence = 0.1, .needsReview = true};
}

double recallOf(const QJsonObject &report, const QString &bin)
{
    return report[u"perBin"_s].toObject()[bin].toObject()[u"recall"_s].toDouble();
}

double precisionOf(const QJsonObject &report, const QString &bin)
{
    return report[u"perBin"_s].toObject()[bin].toObject()[u"precision"_s].toDouble();
}

} // namespace

TEST(Accuracy, ASecondBinIsRightTooButNotStrictly)
{
    const auto report = accuracyReport({sure(u"Kitchen"_s, u"Dining Room"_s, u"Dining Room"_s)});
    const auto strict = report[u"strict"_s].toObject();
    for (const auto &key : {u"accuracy"_s, u"filedPrecision"_s, u"commonBins"_s, u"meanRecall"_s}) {
        EXPECT_EQ(report[key].toDouble(), 1.0) << key.toStdString();
        EXPECT_EQ(strict[key].toDouble(), 0.0) << key.toStdString();
    }
    EXPECT_EQ(recallOf(report, u"Kitchen"_s), 1.0);
    EXPECT_EQ(precisionOf(report, u"Dining Room"_s), 1.0);
    EXPECT_EQ(recallOf(strict, u"Kitchen"_s), 0.0);
    EXPECT_EQ(precisionOf(strict, u"Dining Room"_s), 0.0);
}

TEST(Accuracy, ASplitNameIsItsRoom)
{
    EXPECT_EQ(accuracyReport({sure(u"Kitchen"_s, u"Kitchen 2"_s)})[u"accuracy"_s].toDouble(), 1.0);
}

TEST(Accuracy, OnlyWhatIsFiledWithoutAQuestionCountsForItsPrecision)
{
    const auto report = accuracyReport({sure(u"Kitchen"_s, u"Kitchen"_s), unsure(u"Garage"_s, u"Pool"_s),
                                        sure(u"Closet"_s, u"Bedroom"_s), unsure(u"Office"_s, u"Office"_s)});
    EXPECT_EQ(report[u"filedPrecision"_s].toDouble(), 0.5);
    EXPECT_EQ(report[u"reviewShare"_s].toDouble(), 0.5);
    EXPECT_EQ(report[u"accuracy"_s].toDouble(), 0.5);
    EXPECT_EQ(report[u"commonBins"_s].toDouble(), 1.0);
    EXPECT_EQ(report[u"meanRecall"_s].toDouble(), 0.5);
}

TEST(Accuracy, AerialAndAgentItemsCountInTheirBinsAlone)
{
    const auto report = accuracyReport({sure(u"Kitchen"_s, u"Kitchen"_s), sure(u"Agent / Talent"_s, u"Kitchen"_s),
                                        sure(u"Aerial / Drone"_s, u"Exterior Front"_s)});
    EXPECT_EQ(report[u"counted"_s].toDouble(), 1.0);
    EXPECT_EQ(report[u"accuracy"_s].toDouble(), 1.0);
    EXPECT_EQ(report[u"filedPrecision"_s].toDouble(), 1.0);
    EXPECT_EQ(report[u"meanRecall"_s].toDouble(), 1.0);
    EXPECT_EQ(recallOf(report, u"Agent / Talent"_s), 0.0);
    EXPECT_EQ(precisionOf(report, u"Kitchen"_s), 0.5);
}

TEST(Accuracy, ARoomFiledUnderAPersonIsAMistake)
{
    const auto report = accuracyReport({sure(u"Bedroom"_s, u"Agent / Talent"_s)});
    EXPECT_EQ(report[u"filedPrecision"_s].toDouble(), 0.0);
    EXPECT_EQ(precisionOf(report, u"Agent / Talent"_s), 0.0);
}

TEST(Accuracy, OfWhatShowsNoHouseTheShareThatWasFiledIsTold)
{
    const auto report = accuracyReport({unsure(u"Unsorted"_s, u"Unsorted"_s), unsure(u"Unsorted"_s, u"Pool"_s),
                                        sure(u"Unsorted"_s, u"Garage"_s), unsure(u"Unsorted"_s, u"Office"_s)});
    EXPECT_EQ(report[u"noHouse"_s].toObject(), (QJsonObject{{u"items"_s, 4.0}, {u"filed"_s, 0.25}}));
    EXPECT_EQ(report[u"counted"_s].toDouble(), 0.0);
}
