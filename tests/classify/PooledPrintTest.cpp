#include "classify/PooledPrint.h"

#include <gmock/gmock.h>

#include "classify/ObjectDetector.h"

using namespace larkspan;

namespace {

// Features of a frame whose layers point where the angle says.
std::vector<float> features(double angle, float strength = 1.0f)
{
    std::vector<float> values(ObjectDetector::FeatureCount, 0.0f);
    for (const std::size_t layer : {0, 960}) {
        values[layer] = strength * static_cast<float>(std::cos(angle));
        values[layer + 1] = strength * static_cast<float>(std::sin(angle));
    }
    return values;
}

} // namespace

TEST(PooledPrint, TheSameFrameIsAtDistanceZero)
{
    EXPECT_EQ(pooledPrint(features(0.3))->computeDistance(*pooledPrint(features(0.3))), 0.0f);
}

TEST(PooledPrint, ABrighterTakeOfTheSameViewStaysNear)
{
    EXPECT_NEAR(*pooledPrint(features(0.3))->computeDistance(*pooledPrint(features(0.3, 1.8f))), 0.0f, 1e-3f);
}

TEST(PooledPrint, FramesWithNothingInCommonAreFarApart)
{
    const auto distance = pooledPrint(features(0.0))->computeDistance(*pooledPrint(features(std::acos(0.0))));
    EXPECT_NEAR(*distance, 42.0f * std::sqrt(2.0f), 1e-3f);
}

TEST(PooledPrint, FeaturesThatSayNothingGiveNoPrint)
{
    EXPECT_EQ(pooledPrint({}), nullptr);
    EXPECT_EQ(pooledPrint(std::vector<float>(ObjectDetector::FeatureCount, 0.0f)), nullptr);
    EXPECT_EQ(pooledPrint(std::vector<float>(ObjectDetector::FeatureCount, NAN)), nullptr);
    EXPECT_EQ(pooledPrint(std::vector<float>(10, 1.0f)), nullptr);
}
