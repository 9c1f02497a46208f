#include "classify/vision/RoomEvidence.h"

#include <gmock/gmock.h>

#include "classify/vision/ObjectEvidence.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

namespace {

using Confidences = std::map<QString, float>;

// A place by its scenes, each trusted as far as it is said.
RoomHead::Reading place(const Confidences &scenes)
{
    RoomHead::Reading reading;
    for (const auto &[identifier, confidence] : scenes) {
        reading.scenes.push_back({identifier, confidence});
        reading.trust.push_back(confidence);
    }
    return reading;
}

Confidences merged(const Confidences &scenes, const Confidences &objects)
{
    std::vector<ClassificationObservation> seen;
    for (const auto &[identifier, confidence] : objects) {
        seen.push_back({identifier, confidence});
    }
    Confidences result;
    for (const auto &observation : RoomEvidence::merged(place(scenes), seen)) {
        EXPECT_TRUE(result.emplace(observation.identifier, observation.confidence).second);
    }
    return result;
}

} // namespace

TEST(RoomEvidence, AnObjectSpeaksAsFarAsThePlaceBearsItOut)
{
    EXPECT_EQ(merged({{u"bedroom"_s, 0.75f}}, {{u"bed"_s, 0.5f}}),
              (Confidences{{u"bedroom"_s, 0.75f}, {u"bed"_s, 0.375f}}));
}

TEST(RoomEvidence, ABedSeenThroughADoorDoesNotOutvoteTheBathroom)
{
    const auto found = merged({{u"bathroom"_s, 0.75f}, {u"bedroom"_s, 0.125f}}, {{u"bed"_s, 1.0f}});
    EXPECT_LE(found.at(u"bed"_s) + found.at(u"bedroom"_s), found.at(u"bathroom"_s) / 2);
}

TEST(RoomEvidence, APlantInACornerSaysNextToNothingInAKitchen)
{
    EXPECT_LT(merged({{u"kitchen"_s, 0.9f}, {u"foliage"_s, 0.01f}}, {{u"plant"_s, 0.9f}}).at(u"plant"_s), 0.06f);
}

TEST(RoomEvidence, AnObjectOfABinThatThePlaceKnowsNothingOfSaysNothing)
{
    EXPECT_EQ(merged({{u"kitchen"_s, 0.5f}}, {{u"bed"_s, 1.0f}}).at(u"bed"_s), 0.0f);
}

TEST(RoomEvidence, PeopleAndThingsOfNoBinAreLeftAsTheyAre)
{
    EXPECT_EQ(merged({{u"kitchen"_s, 0.5f}, {u"portrait"_s, 0.0f}}, {{u"person"_s, 0.75f}, {u"chair"_s, 0.25f}}),
              (Confidences{{u"kitchen"_s, 0.5f}, {u"portrait"_s, 0.0f}, {u"person"_s, 0.75f}, {u"chair"_s, 0.25f}}));
}

TEST(RoomEvidence, OfAnIdentifierThatBothKnowTheLargerCounts)
{
    EXPECT_EQ(merged({{u"plant"_s, 0.5f}}, {{u"plant"_s, 0.75f}}), (Confidences{{u"plant"_s, 0.5f}}));
    EXPECT_EQ(merged({{u"chair"_s, 0.25f}}, {{u"chair"_s, 0.75f}}), (Confidences{{u"chair"_s, 0.75f}}));
}
