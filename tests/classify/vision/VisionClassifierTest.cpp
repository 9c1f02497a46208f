#include "classify/vision/VisionClassifier.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include "core/bins/RoomLabel.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace {

using Answers = std::vector<std::optional<FrameObservations>>;

// Answers made by hand; a frame tells by its width which is its.
class HandMadeRequests : public VisionRequests
{
public:
    explicit HandMadeRequests(Answers answers, std::vector<QString> identifiers = {})
        : m_answers(std::move(answers))
        , m_identifiers(std::move(identifiers))
    {}

    Answers perform(std::span<const QImage> frames) const override
    {
        Answers answers;
        for (const auto &frame : frames) {
            answers.push_back(m_answers.at(static_cast<std::size_t>(frame.width()) - 1));
        }
        return answers;
    }
    std::vector<QString> supportedIdentifiers() const override { return m_identifiers; }

private:
    Answers m_answers;
    std::vector<QString> m_identifiers;
};

FrameAnalysis analysisOf(const Answers &answers)
{
    std::vector<QImage> frames;
    for (int i = 1; i <= static_cast<int>(answers.size()); ++i) {
        frames.emplace_back(i, 1, QImage::Format_RGB32);
    }
    return VisionClassifier(std::make_shared<HandMadeRequests>(answers)).analyze(frames);
}

FrameObservations showing(std::vector<ClassificationObservation> classifications)
{
    return {.classifications = std::move(classifications)};
}

FrameObservations withHuman(float confidence, double width = 0.5, double height = 0.5)
{
    return {.humans = {{QRectF(0, 0, width, height), confidence}}};
}

FeaturePrintPtr print(float value)
{
    return std::make_shared<const FeaturePrint>(std::vector{value});
}

} // namespace

TEST(VisionClassifier, AnIdentifierBelowTheLeastConfidenceInAllFourFramesIsAbsentFromRawAndGivesNoVote)
{
    const Answers faint(4, showing({{u"kitchen"_s, 0.05f}}));
    EXPECT_EQ(analysisOf(faint), FrameAnalysis());
}

TEST(VisionClassifier, TheLeastConfidenceIsComparedInDoublePrecision)
{
    ASSERT_LT(static_cast<double>(0.06f), 0.06); // so 0.06 as a float is too little
    const auto analysis = analysisOf({showing({{u"kitchen"_s, 0.06f}, {u"bed"_s, std::nextafter(0.06f, 1.0f)}})});
    EXPECT_THAT(analysis.raw, ElementsAre(Pair(u"bed"_s, testing::Ge(0.06))));
}

TEST(VisionClassifier, AnIdentifierKeepsTheConfidenceOfItsBestFrame)
{
    const auto analysis = analysisOf({
        showing({{u"bed"_s, 0.25f}}),
        showing({{u"bed"_s, 0.75f}, {u"bed"_s, 0.5f}}),
        showing({{u"bed"_s, 0.5f}}),
    });
    EXPECT_THAT(analysis.raw, ElementsAre(Pair(u"bed"_s, 0.75)));
    EXPECT_THAT(analysis.scores, ElementsAre(Pair(u"Bedroom"_s, 0.75)));
}

TEST(VisionClassifier, VotesOfOneBinAddUp)
{
    const auto analysis =
        analysisOf({showing({{u"kitchen"_s, 0.75f}, {u"sink"_s, 0.25f}}), showing({{u"countertop"_s, 0.5f}})});
    EXPECT_THAT(analysis.scores, ElementsAre(Pair(u"Bathroom"_s, 0.25), Pair(u"Kitchen"_s, 1.25)));
}

TEST(VisionClassifier, AnIdentifierOfTwoBinsGivesEachHalf)
{
    const auto analysis = analysisOf({showing({{u"patio"_s, 0.5f}})});
    EXPECT_THAT(analysis.scores, ElementsAre(Pair(u"Entry / Courtyard"_s, 0.25), Pair(u"Exterior Back"_s, 0.25)));
}

TEST(VisionClassifier, AnUnknownIdentifierIsKeptForDiagnosticsAndGivesNoVote)
{
    const auto analysis = analysisOf({showing({{u"chair"_s, 0.5f}})});
    EXPECT_THAT(analysis.scores, IsEmpty());
    EXPECT_THAT(analysis.raw, ElementsAre(Pair(u"chair"_s, 0.5)));
}

TEST(VisionClassifier, IdentifiersAreComparedInLowerCase)
{
    const auto analysis = analysisOf({showing({{u"Bed"_s, 0.25f}, {u"BED"_s, 0.5f}})});
    EXPECT_THAT(analysis.raw, ElementsAre(Pair(u"bed"_s, 0.5)));
    EXPECT_THAT(analysis.scores, ElementsAre(Pair(u"Bedroom"_s, 0.5)));
}

TEST(VisionClassifier, ThePeopleAndDroneBinsGetTheirVotesToo)
{
    const auto analysis = analysisOf({showing({{u"person"_s, 0.5f}, {u"suburb"_s, 0.25f}})});
    EXPECT_THAT(analysis.scores, ElementsAre(Pair(u"Aerial / Drone"_s, 0.25), Pair(u"Agent / Talent"_s, 0.5)));
}

TEST(VisionClassifier, RawHoldsTheTwelveStrongestHighestFirst)
{
    std::vector<ClassificationObservation> many;
    for (int i = 1; i <= 20; ++i) {
        many.push_back({u"thing%1"_s.arg(i), static_cast<float>(i) / 32.0f});
    }
    const auto raw = analysisOf({showing(many)}).raw;
    ASSERT_THAT(raw, SizeIs(12));
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(raw[static_cast<std::size_t>(i)], RawIdentifier(u"thing%1"_s.arg(20 - i), (20 - i) / 32.0));
    }
}

TEST(VisionClassifier, AHumanRectangleOfExactlyTheThresholdDoesNotCount)
{
    EXPECT_EQ(analysisOf({withHuman(0.35f)}), FrameAnalysis());

    const auto above = analysisOf({withHuman(std::nextafter(0.35f, 1.0f))});
    EXPECT_EQ(above.framesWithHuman, 1);
    EXPECT_EQ(above.humanFraction, 0.25);
    EXPECT_FALSE(above.humanConfirmed);
}

TEST(VisionClassifier, HumanFractionIsTheLargestAreaOfOnePersonInAnyFrame)
{
    auto crowd = withHuman(0.5f, 0.5, 0.25);
    crowd.humans.push_back({QRectF(0.5, 0, 0.5, 0.5), 0.5f});
    crowd.humans.push_back({QRectF(0, 0, 1, 1), 0.25f}); // too unsure to count
    const auto analysis = analysisOf({withHuman(0.9f, 0.25, 0.25), crowd, withHuman(0.9f, 0.25, 0.5)});
    EXPECT_EQ(analysis.humanFraction, 0.25);
    EXPECT_EQ(analysis.framesWithHuman, 3);
}

TEST(VisionClassifier, APoseOrAFaceAloneMakesAFrameWithAHumanAndConfirmsIt)
{
    for (const auto &frame : {FrameObservations{.bodyPoses = 1}, FrameObservations{.faces = 2}}) {
        const auto analysis = analysisOf({frame, FrameObservations()});
        EXPECT_EQ(analysis.framesWithHuman, 1);
        EXPECT_TRUE(analysis.humanConfirmed);
        EXPECT_EQ(analysis.humanFraction, 0.0);
    }
}

TEST(VisionClassifier, AFrameCountsOnceHoweverManyDetectorsFindAPersonInIt)
{
    auto frame = withHuman(0.5f);
    frame.bodyPoses = 3;
    frame.faces = 2;
    EXPECT_EQ(analysisOf({frame}).framesWithHuman, 1);
}

TEST(VisionClassifier, AFailedFrameIsDroppedAndTheOthersCount)
{
    const auto analysis = analysisOf({std::nullopt, showing({{u"bed"_s, 0.5f}}), std::nullopt});
    EXPECT_THAT(analysis.scores, ElementsAre(Pair(u"Bedroom"_s, 0.5)));
}

TEST(VisionClassifier, NoFramesAndOnlyFailedFramesGiveAnEmptyAnalysis)
{
    EXPECT_EQ(analysisOf({}), FrameAnalysis());
    EXPECT_EQ(analysisOf({std::nullopt, std::nullopt}), FrameAnalysis());
}

TEST(VisionClassifier, WithoutModelsEveryAnalysisIsEmptyAndNoIdentifierIsSupported)
{
    const VisionClassifier classifier(nullptr);
    const std::vector frames{QImage(4, 4, QImage::Format_RGB32)};
    EXPECT_EQ(classifier.analyze(frames), FrameAnalysis());
    EXPECT_THAT(classifier.supportedIdentifiers(), IsEmpty());
}

TEST(VisionClassifier, TheFirstPrintThatAnyFrameYieldsIsKept)
{
    const auto first = print(1.0f);
    const Answers answers{std::nullopt, FrameObservations(), FrameObservations{.featurePrint = first},
                          FrameObservations{.featurePrint = print(2.0f)}};
    EXPECT_EQ(analysisOf(answers).featurePrint, first);
}

TEST(VisionClassifier, SupportedIdentifiersAreSorted)
{
    const VisionClassifier classifier(
        std::make_shared<HandMadeRequests>(Answers(), std::vector{u"sofa"_s, u"bed"_s, u"oven"_s}));
    EXPECT_THAT(classifier.supportedIdentifiers(), ElementsAre(u"bed"_s, u"oven"_s, u"sofa"_s));
}

RC_GTEST_PROP(VisionClassifier, TheVotesAddUpToTheMappedConfidences, ())
{
    std::vector<QString> known;
    for (const auto &[identifier, bins] : RoomLabel::binsByIdentifier()) {
        known.push_back(identifier);
    }
    Answers answers;
    const auto frames = *rc::gen::inRange(0, 4);
    for (int i = 0; i < frames; ++i) {
        std::vector<ClassificationObservation> observations;
        const auto count = *rc::gen::inRange(0, 12);
        for (int j = 0; j < count; ++j) {
            observations.push_back({*rc::gen::elementOf(known), static_cast<float>(*rc::gen::inRange(0, 65)) / 64.0f});
        }
        answers.emplace_back(showing(std::move(observations)));
    }
    std::map<QString, double> best;
    for (const auto &answer : answers) {
        for (const auto &observation : answer->classifications) {
            if (observation.confidence >= 0.06) {
                best[observation.identifier] = std::max<double>(best[observation.identifier], observation.confidence);
            }
        }
    }
    double expected = 0.0;
    for (const auto &[identifier, confidence] : best) {
        expected += confidence;
    }
    double sum = 0.0;
    for (const auto &[bin, score] : analysisOf(answers).scores) {
        sum += score;
    }
    RC_ASSERT(std::abs(sum - expected) < 1e-9);
}
