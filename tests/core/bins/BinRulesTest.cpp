#include <gmock/gmock.h>

#include "core/bins/BinRules.h"
#include "core/bins/RoomLabel.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Scores = std::map<QString, double>;

Classification classify(const FrameAnalysis &analysis, const QString &fileName = u"C0001.MOV"_s,
                        const SortOptions &options = {})
{
    return classification(analysis, MediaClip(FileUrl("/shoot").appending(fileName)), options);
}

FrameAnalysis person(double fraction, int frames, bool confirmed, Scores scores = {})
{
    return {
        .scores = std::move(scores), .humanFraction = fraction, .framesWithHuman = frames, .humanConfirmed = confirmed};
}

MediaClip filed(const QString &bin, double confidence, const QString &runnerUp = {}, double runnerUpScore = 0.0)
{
    MediaClip clip(FileUrl("/shoot/a.mov"));
    clip.primaryBin = bin;
    clip.confidence = confidence;
    clip.runnerUp = runnerUp;
    clip.runnerUpScore = runnerUpScore;
    return clip;
}

QString reviewOf(MediaClip clip, const SortOptions &options = {})
{
    applyReviewFlags(clip, options);
    EXPECT_EQ(clip.needsReview, !clip.reviewReason.isEmpty());
    return clip.reviewReason;
}

} // namespace

TEST(Classification, AKitchenWithASinkIsAKitchenAndTheBathroomItsRunnerUp)
{
    const FrameAnalysis analysis{.scores = {{u"Kitchen"_s, 1.2}, {u"Bathroom"_s, 0.3}},
                                 .raw = {{u"kitchen"_s, 0.8}, {u"countertop"_s, 0.4}, {u"sink"_s, 0.3}}};
    const Classification result = classify(analysis);
    EXPECT_EQ(result.primary, u"Kitchen"_s);
    EXPECT_DOUBLE_EQ(result.score, 0.8);
    EXPECT_THAT(result.secondaries, IsEmpty());
    EXPECT_EQ(result.runnerUp, u"Bathroom"_s);
    EXPECT_DOUBLE_EQ(result.runnerUpScore, 0.2);
    EXPECT_EQ(result.raw, analysis.raw);
}

TEST(Classification, AnUnconfirmedTwoPercentPersonInOneFrameStaysARoom)
{
    EXPECT_EQ(classify(person(0.02, 1, false, {{u"Kitchen"_s, 1.0}})).primary, u"Kitchen"_s);
}

TEST(Classification, ATwoPercentPersonInTwoFramesOrWithAFaceIsATalentShotAtTheLeastScore)
{
    for (const FrameAnalysis &analysis : {person(0.02, 2, false), person(0.02, 1, true)}) {
        const Classification result = classify(analysis);
        EXPECT_EQ(result.primary, u"Agent / Talent"_s);
        EXPECT_EQ(result.score, 0.6);
    }
}

TEST(Classification, AThreePercentPersonNeedsNoOneToVouch)
{
    EXPECT_EQ(classify(person(0.03, 1, false)).primary, u"Agent / Talent"_s);
    EXPECT_EQ(classify(person(0.0299, 1, false)).primary, u"Unsorted"_s);
}

TEST(Classification, APersonBelowTheLeastAreaIsNone)
{
    EXPECT_EQ(classify(person(0.0059, 4, true, {{u"Pool"_s, 1.0}})).primary, u"Pool"_s);
    EXPECT_EQ(classify(person(0.006, 4, true, {{u"Pool"_s, 1.0}})).primary, u"Agent / Talent"_s);
}

TEST(Classification, ALargePersonScoresAtMostOne)
{
    EXPECT_EQ(classify(person(0.2, 1, false)).score, 1.0);
    EXPECT_DOUBLE_EQ(classify(person(0.1, 1, false)).score, 0.8);
}

TEST(Classification, AFaceWithoutARectangleLeavesARoom)
{
    EXPECT_EQ(classify(person(0.0, 3, true, {{u"Bedroom"_s, 1.0}})).primary, u"Bedroom"_s);
}

TEST(Classification, APersonShotKeepsItsRoomTagFromAQuarterOfTheEvidenceOn)
{
    const Scores quarter{{u"Kitchen"_s, 0.25}, {u"Agent / Talent"_s, 0.75}};
    EXPECT_THAT(classify(person(0.1, 1, true, quarter)).secondaries, ElementsAre(u"Kitchen"_s));
    const Scores less{{u"Kitchen"_s, 0.24}, {u"Agent / Talent"_s, 0.76}};
    const Classification result = classify(person(0.1, 1, true, less));
    EXPECT_THAT(result.secondaries, IsEmpty());
    EXPECT_EQ(result.runnerUp, u"Kitchen"_s);
    EXPECT_DOUBLE_EQ(result.runnerUpScore, 0.24);
}

TEST(Classification, ARunnerUpMayBeASecondaryAtOnce)
{
    const Classification result = classify(person(0.1, 1, true, {{u"Kitchen"_s, 1.0}}));
    EXPECT_THAT(result.secondaries, ElementsAre(u"Kitchen"_s));
    EXPECT_EQ(result.runnerUp, u"Kitchen"_s);
}

TEST(Classification, TheHallwayYieldsToTheRoomItLooksIntoFromSixtyFivePercentOn)
{
    const Classification yields = classify({.scores = {{u"Hallway / Stairs"_s, 1.0}, {u"Kitchen"_s, 0.65}}});
    EXPECT_EQ(yields.primary, u"Kitchen"_s);
    EXPECT_THAT(yields.secondaries, ElementsAre(u"Hallway / Stairs"_s));
    EXPECT_DOUBLE_EQ(yields.score, 0.65 / 1.65);
    EXPECT_EQ(yields.runnerUp, u"Hallway / Stairs"_s);

    const Classification stays = classify({.scores = {{u"Hallway / Stairs"_s, 1.0}, {u"Kitchen"_s, 0.64}}});
    EXPECT_EQ(stays.primary, u"Hallway / Stairs"_s);
    EXPECT_THAT(stays.secondaries, IsEmpty());

    EXPECT_EQ(classify({.scores = {{u"Hallway / Stairs"_s, 2.0}, {u"Kitchen"_s, 1.2}}}).primary, u"Hallway / Stairs"_s)
        << "of the hallway's score, however high";
}

TEST(Classification, TheHallwayYieldsAlsoWithoutTheOpenPlanOption)
{
    const Classification result =
        classify({.scores = {{u"Hallway / Stairs"_s, 1.0}, {u"Kitchen"_s, 0.9}, {u"Bedroom"_s, 0.9}}}, u"a.mov"_s,
                 {.tagOpenPlanTwice = false});
    EXPECT_EQ(result.primary, u"Bedroom"_s) << "equal scores go by name";
    EXPECT_THAT(result.secondaries, ElementsAre(u"Hallway / Stairs"_s));
}

TEST(Classification, TheOpenPlanBarIsReckonedFromTheHallwayThatYielded)
{
    // 0.69 is above 0.7 of the kitchen's score, and below 0.7 of the hallway's.
    const Scores scores{{u"Hallway / Stairs"_s, 1.0}, {u"Kitchen"_s, 0.8}, {u"Dining Room"_s, 0.69}};
    const Classification result = classify({.scores = scores});
    EXPECT_EQ(result.primary, u"Kitchen"_s);
    EXPECT_THAT(result.secondaries, ElementsAre(u"Hallway / Stairs"_s));
    const Scores above{{u"Hallway / Stairs"_s, 1.0}, {u"Kitchen"_s, 0.8}, {u"Dining Room"_s, 0.7}};
    EXPECT_THAT(classify({.scores = above}).secondaries, ElementsAre(u"Hallway / Stairs"_s, u"Dining Room"_s));
}

TEST(Classification, EvidenceCountsAsAtLeastATenThousandth)
{
    EXPECT_DOUBLE_EQ(classify({.scores = {{u"Pool"_s, 0.00005}}}).score, 0.5);
    EXPECT_DOUBLE_EQ(classify({.scores = {{u"Pool"_s, 0.0002}}}).score, 1.0);
}

TEST(Classification, AnOpenPlanShotGetsAtMostTwoFurtherBins)
{
    const Scores scores{{u"Kitchen"_s, 1.0}, {u"Dining Room"_s, 0.9}, {u"Living Room"_s, 0.8}, {u"Office"_s, 0.75}};
    EXPECT_THAT(classify({.scores = scores}).secondaries, ElementsAre(u"Dining Room"_s, u"Living Room"_s));
    EXPECT_THAT(classify({.scores = scores}, u"a.mov"_s, {.tagOpenPlanTwice = false}).secondaries, IsEmpty());
}

TEST(Classification, ASecondaryNeedsAShareOfAllTheEvidenceToo)
{
    Scores scores{{u"Kitchen"_s, 0.10}, {u"Office"_s, 0.09}};
    EXPECT_THAT(classify({.scores = scores}).secondaries, ElementsAre(u"Office"_s));
    scores[u"Agent / Talent"_s] = 1.0;
    EXPECT_THAT(classify({.scores = scores}).secondaries, IsEmpty()) << "0.09 is below 0.14 of 1.19";
}

TEST(Classification, VotesForTalentAloneWithoutAPersonLeaveTheClipUnsorted)
{
    const Classification result = classify({.scores = {{u"Agent / Talent"_s, 0.9}}, .raw = {{u"person"_s, 0.9}}});
    EXPECT_EQ(result, (Classification{.primary = u"Unsorted"_s, .raw = {{u"person"_s, 0.9}}}));
}

TEST(Classification, NoEvidenceOrOnlyEmptyEvidenceLeavesTheClipUnsorted)
{
    EXPECT_EQ(classify({}).primary, u"Unsorted"_s);
    EXPECT_EQ(classify({.scores = {{u"Kitchen"_s, 0.0}}}).primary, u"Unsorted"_s);
}

TEST(Classification, EqualScoresGoToTheNameThatSortsFirst)
{
    const Classification result = classify({.scores = {{u"Pool"_s, 0.5}, {u"Bedroom"_s, 0.5}}});
    EXPECT_EQ(result.primary, u"Bedroom"_s);
    EXPECT_EQ(result.runnerUp, u"Pool"_s);
}

TEST(Classification, EvidenceForTheExclusiveBinsLowersTheShareOfTheRoom)
{
    EXPECT_DOUBLE_EQ(classify({.scores = {{u"Pool"_s, 0.5}, {u"Aerial / Drone"_s, 1.5}}}).score, 0.25);
}

TEST(Classification, ADroneClipKeepsToTheAerialBinAlone)
{
    const Classification result = classify({.scores = {{u"Exterior Front"_s, 1.0}}}, u"DJI_0042.MP4"_s);
    EXPECT_EQ(result.primary, u"Aerial / Drone"_s);
    EXPECT_EQ(result.score, 1.0);
    EXPECT_THAT(result.secondaries, IsEmpty());
    EXPECT_EQ(result.runnerUp, u"Exterior Front"_s);
}

TEST(Classification, ADroneClipGetsItsTopRoomAtAQuarterWhenTheOptionIsOff)
{
    const SortOptions options{.keepDroneExclusive = false};
    const Scores quarter{{u"Pool"_s, 0.25}, {u"Aerial / Drone"_s, 0.75}};
    EXPECT_THAT(classify({.scores = quarter}, u"DJI_0042.MP4"_s, options).secondaries, ElementsAre(u"Pool"_s));
    const Scores less{{u"Pool"_s, 0.24}, {u"Aerial / Drone"_s, 0.76}};
    EXPECT_THAT(classify({.scores = less}, u"DJI_0042.MP4"_s, options).secondaries, IsEmpty());
    const Scores fifth{{u"Pool"_s, 0.5}, {u"Aerial / Drone"_s, 2.0}};
    EXPECT_THAT(classify({.scores = fifth}, u"DJI_0042.MP4"_s, options).secondaries, IsEmpty()) << "of all evidence";
}

TEST(Classification, APersonInADroneClipStaysADroneClip)
{
    EXPECT_EQ(classify(person(0.5, 4, true), u"DJI_0042.MP4"_s).primary, u"Aerial / Drone"_s);
}

TEST(DroneClip, IsKnownByItsFileNameOrCameraInAnyCase)
{
    EXPECT_TRUE(isDroneClip(u"dji_0001.mp4"_s, {}));
    for (const auto &mark :
         {u"DJI_"_s, u"MAVIC"_s, u"INSPIRE"_s, u"AVATA"_s, u"NEO_"_s, u"FPV"_s, u"SKYDIO"_s, u"AUTEL"_s, u"EVO"_s}) {
        EXPECT_TRUE(isDroneClip(u"a"_s + mark + u"b.mov"_s, {})) << mark.toStdString();
    }
    EXPECT_TRUE(isDroneClip(u"a.mov"_s, u"Mavic 3 Pro"_s));
    EXPECT_TRUE(isDroneClip(u"DEVON_HOUSE.MOV"_s, {})) << "no word boundaries";
    EXPECT_FALSE(isDroneClip(u"KITCHEN.MOV"_s, u"ILCE-7SM3"_s));
    EXPECT_FALSE(isDroneClip(u"DJI0001.MOV"_s, {}));
    EXPECT_FALSE(isDroneClip(u"shot in d"_s, u"ji_"_s)) << "name and camera are joined by a blank";
}

TEST(ReviewFlags, LittleToGoOnComesBeforeTorn)
{
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.17, u"Bathroom"_s, 0.17)), u"little to go on — 0.17 confidence"_s);
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.18)), QString());
}

TEST(ReviewFlags, AThinLeadIsTorn)
{
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.40, u"Bathroom"_s, 0.37)),
              u"torn between Kitchen and Bathroom — 0.40 vs 0.37"_s);
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.75, u"Bathroom"_s, 0.25)), QString());
}

TEST(ReviewFlags, ALeadIsThinBelowFourHundredths)
{
    EXPECT_NE(reviewOf(filed(u"Kitchen"_s, 0.5, u"Bathroom"_s, 0.461)), QString());
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.5, u"Bathroom"_s, 0.459)), QString());
}

TEST(ReviewFlags, WhatLiesHalfwayIsRoundedToTheEvenNeighbour)
{
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.125)), u"little to go on — 0.12 confidence"_s);
    EXPECT_EQ(reviewOf(filed(u"Kitchen"_s, 0.625, u"Bathroom"_s, 0.609375)),
              u"torn between Kitchen and Bathroom — 0.62 vs 0.61"_s);
}

TEST(ReviewFlags, ARivalThatIsTaggedIsNoDoubt)
{
    MediaClip clip = filed(u"Kitchen"_s, 0.40, u"Bathroom"_s, 0.40);
    clip.extraBins = {u"Dining Room"_s, u"Bathroom"_s};
    applyReviewFlags(clip, {});
    EXPECT_FALSE(clip.needsReview);
}

TEST(ReviewFlags, AerialAndTalentAreNeverUnsure)
{
    EXPECT_EQ(reviewOf(filed(u"Aerial / Drone"_s, 0.0)), QString());
    EXPECT_EQ(reviewOf(filed(u"Agent / Talent"_s, 0.1, u"Pool"_s, 0.1)), QString());
}

TEST(ReviewFlags, UnsortedKeepsTheReasonItHas)
{
    EXPECT_EQ(reviewOf(filed(u"Unsorted"_s, 0.0)), u"no room read from the frames"_s);
    MediaClip unread = filed(u"Unsorted"_s, 0.0);
    unread.reviewReason = u"couldn't read any frames"_s;
    EXPECT_EQ(reviewOf(std::move(unread)), u"couldn't read any frames"_s);
}

TEST(ReviewFlags, WithTheOptionOffAnUnsortedClipIsFiledAndNotFlagged)
{
    EXPECT_EQ(reviewOf(filed(u"Unsorted"_s, 0.0), {.sendUnsureToReview = false}), QString());
}

TEST(ReviewFlags, NamesThatLookLikePlaceholdersStayAsTheyAre)
{
    EXPECT_EQ(reviewOf(filed(u"Room %2"_s, 0.40, u"Room %3"_s, 0.39)),
              u"torn between Room %2 and Room %3 — 0.40 vs 0.39"_s);
}
