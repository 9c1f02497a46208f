#include "classify/vision/ObjectEvidence.h"

#include <gmock/gmock.h>

#include "core/bins/RoomLabel.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

namespace {

// An object under its name in the taxonomy, filling a share of the frame.
DetectedObject object(const QString &name, float confidence, double area = 0.25)
{
    const auto names = ObjectEvidence::identifiers();
    const auto at = std::ranges::find(names, name);
    if (at == names.end()) {
        throw std::invalid_argument("no such kind: " + name.toStdString());
    }
    return {static_cast<int>(at - names.begin()), confidence, QRectF(0, 0, 1, area)};
}

std::map<QString, float> evidence(std::vector<DetectedObject> objects)
{
    std::map<QString, float> result;
    for (const auto &observation : ObjectEvidence::observations(objects)) {
        result[observation.identifier] = observation.confidence;
    }
    return result;
}

} // namespace

TEST(ObjectEvidence, NoObjectsGiveNoEvidence)
{
    EXPECT_THAT(evidence({}), IsEmpty());
}

TEST(ObjectEvidence, FurnitureSpeaksForItsRoomUnderTheNamesOfTheTable)
{
    const std::map<QString, QString> expected{
        {u"bed"_s, u"Bedroom"_s},
        {u"sofa"_s, u"Living Room"_s},
        {u"television"_s, u"Living Room"_s},
        {u"dining_table"_s, u"Dining Room"_s},
        {u"toilet"_s, u"Bathroom"_s},
        {u"sink"_s, u"Bathroom"_s},
        {u"oven"_s, u"Kitchen"_s},
        {u"refrigerator"_s, u"Kitchen"_s},
        {u"microwave"_s, u"Kitchen"_s},
        {u"computer"_s, u"Office"_s},
        {u"book"_s, u"Interior Detail"_s},
        {u"vase"_s, u"Interior Detail"_s},
        {u"plant"_s, u"Exterior Detail"_s},
        {u"person"_s, u"Agent / Talent"_s},
    };
    std::map<QString, QString> mapped;
    for (const auto &identifier : ObjectEvidence::identifiers()) {
        const auto bins = RoomLabel::binsByIdentifier().find(identifier);
        if (bins != RoomLabel::binsByIdentifier().end()) {
            mapped[identifier] = bins->second.front();
        }
    }
    EXPECT_EQ(mapped, expected);
}

TEST(ObjectEvidence, EveryKindHasAnIdentifierOfItsOwn)
{
    const auto identifiers = ObjectEvidence::identifiers();
    EXPECT_EQ(std::set<QString>(identifiers.begin(), identifiers.end()).size(),
              static_cast<std::size_t>(ObjectDetector::kindCount));
}

TEST(ObjectEvidence, TheLoudestOfSeveralObjectsOfAKindCounts)
{
    EXPECT_EQ(evidence({object(u"bed"_s, 0.25f), object(u"bed"_s, 0.5f)}), (std::map{std::pair(u"bed"_s, 0.5f)}));
}

TEST(ObjectEvidence, AnObjectThatIsSmallInTheFrameCountsLess)
{
    const float near = evidence({object(u"toilet"_s, 0.5f, 0.2)}).at(u"toilet"_s);
    const float far = evidence({object(u"toilet"_s, 0.5f, 0.01)}).at(u"toilet"_s);
    EXPECT_EQ(near, 0.5f);
    EXPECT_LT(far, near);
    EXPECT_GT(far, near / 2);
}

TEST(ObjectEvidence, BooksVasesAndPlantsCountOnlyWhereTheyAreWhatTheFrameShows)
{
    for (const auto &name : {u"book"_s, u"vase"_s, u"plant"_s}) {
        EXPECT_THAT(evidence({object(name, 0.9f, 0.05)}), IsEmpty()) << name.toStdString();
        EXPECT_EQ(evidence({object(name, 0.9f, 0.5)}), (std::map{std::pair(name, 0.9f)}));
    }
}

TEST(ObjectEvidence, ASinkBesideKitchenAppliancesIsHardlyASignOfABathroom)
{
    const auto found = evidence({object(u"sink"_s, 0.5f), object(u"oven"_s, 0.375f)});
    EXPECT_EQ(found.at(u"oven"_s), 0.375f);
    EXPECT_EQ(found.at(u"sink"_s), 0.125f);
    EXPECT_EQ(evidence({object(u"sink"_s, 0.5f)}).at(u"sink"_s), 0.5f);
}

TEST(ObjectEvidence, ASofaOrATelevisionBesideASureBedIsNoSignOfALivingRoom)
{
    const auto found = evidence({object(u"bed"_s, 0.5f), object(u"sofa"_s, 0.4f), object(u"television"_s, 0.4f)});
    EXPECT_EQ(found, (std::map{std::pair(u"bed"_s, 0.5f)}));
}

TEST(ObjectEvidence, AChairIsNamedButFeedsNoBin)
{
    EXPECT_EQ(evidence({object(u"chair"_s, 0.5f)}), (std::map{std::pair(u"chair"_s, 0.5f)}));
    EXPECT_FALSE(RoomLabel::binsByIdentifier().contains(u"chair"_s));
}

TEST(ObjectEvidence, AKindOutsideTheTableIsPassedOver)
{
    EXPECT_THAT(evidence({DetectedObject{80, 0.5f, QRectF(0, 0, 1, 1)}, DetectedObject{-1, 0.5f, QRectF(0, 0, 1, 1)}}),
                IsEmpty());
}
