#include "classify/vision/PersonEvidence.h"

#include <gmock/gmock.h>

using namespace larkspan;
using namespace larkspan::PersonEvidence;

namespace {

const HumanObservation Standing{QRectF(0.4, 0.1, 0.2, 0.8), 0.7f};

BodyPose poseWith(std::initializer_list<std::size_t> joints)
{
    BodyPose pose;
    for (const auto joint : joints) {
        pose.confidence[joint] = 0.6f;
    }
    return pose;
}

const BodyPose Whole = poseWith({0, 1, 2, 5, 6, 7, 8, 11, 12, 13, 14});
const BodyPose HeadAlone = poseWith({0, 1, 2, 3, 4});
const std::vector<DetectedFace> FaceInTheBox{{0.9f, QRectF(0.45, 0.12, 0.1, 0.1)}};
const std::vector<DetectedFace> FaceOnTheWall{{0.9f, QRectF(0.8, 0.1, 0.1, 0.1)}};

// A clip whose frames confirm so many people each.
bool shows(const std::vector<int> &people)
{
    std::vector<Confirmation> frames;
    for (const int count : people) {
        frames.push_back({.people = std::vector(static_cast<std::size_t>(count), Standing)});
    }
    return showsPerson(frames);
}

} // namespace

TEST(PersonEvidence, AHeadOnATrunkIsAPersonEvenWithoutAFace)
{
    EXPECT_TRUE(isPresent(Standing, Whole, {}));
    EXPECT_FALSE(isPresent(Standing, poseWith({5, 6, 7, 8, 11, 12, 13, 14}), {}));
    EXPECT_FALSE(isPresent(Standing, poseWith({0, 5, 6, 11, 12}), {}));
}

TEST(PersonEvidence, AHandIsNoPerson)
{
    EXPECT_FALSE(isPresent(Standing, poseWith({7, 8, 9, 10}), {}));
}

TEST(PersonEvidence, AHeadAloneNeedsAFaceInTheBox)
{
    EXPECT_TRUE(isPresent(Standing, HeadAlone, FaceInTheBox));
    EXPECT_FALSE(isPresent(Standing, HeadAlone, FaceOnTheWall));
    EXPECT_FALSE(isPresent(Standing, HeadAlone, {}));
}

TEST(PersonEvidence, SomeoneFarAwayIsNoPerson)
{
    EXPECT_FALSE(isPresent({QRectF(0.4, 0.4, 0.1, 0.25), 0.9f}, Whole, {}));
    EXPECT_FALSE(isPresent({QRectF(0.2, 0.4, 0.5, 0.15), 0.9f}, Whole, {}));
    EXPECT_TRUE(isPresent({QRectF(0.4, 0.4, 0.2, 0.25), 0.9f}, Whole, {}));
}

TEST(PersonEvidence, MostFramesOfAClipMustConfirmAPerson)
{
    EXPECT_TRUE(shows({1, 0, 1, 1}));
    EXPECT_FALSE(shows({1, 0, 1, 0}));
    EXPECT_TRUE(shows({1, 1, 0}));
    EXPECT_FALSE(shows({1, 0}));
    EXPECT_TRUE(shows({1}));
    EXPECT_FALSE(shows({0}));
    EXPECT_FALSE(shows({}));
}

TEST(PersonEvidence, SeveralPeopleInOneFrameAreNoSecondFrame)
{
    EXPECT_FALSE(shows({5, 0, 0, 0}));
}
