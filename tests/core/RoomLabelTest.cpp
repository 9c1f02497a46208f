#include <gmock/gmock.h>

#include "core/RoomLabel.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;

TEST(RoomLabel, TheTableHoldsNineteenBinsWithUniqueNamesInTheirOrder)
{
    std::vector<QString> names;
    for (const RoomLabel &label : RoomLabel::all()) {
        names.push_back(label.name);
    }
    EXPECT_THAT(names,
                ElementsAre(u"Kitchen"_s, u"Bathroom"_s, u"Bedroom"_s, u"Living Room"_s, u"Dining Room"_s, u"Office"_s,
                            u"Laundry Room"_s, u"Garage"_s, u"Hallway / Stairs"_s, u"Closet"_s, u"Exterior Front"_s,
                            u"Entry / Courtyard"_s, u"Exterior Back"_s, u"Pool"_s, u"Aerial / Drone"_s,
                            u"Agent / Talent"_s, u"Exterior Detail"_s, u"Interior Detail"_s, u"Amenities / Other"_s));
    EXPECT_THAT(RoomLabel::byName(), SizeIs(19));
}

TEST(RoomLabel, PatioFeedsTwoBinsAndEveryOtherIdentifierOne)
{
    EXPECT_THAT(RoomLabel::binsByIdentifier(), SizeIs(164));
    for (const auto &[identifier, bins] : RoomLabel::binsByIdentifier()) {
        if (identifier == u"patio"_s) {
            EXPECT_THAT(bins, ElementsAre(u"Entry / Courtyard"_s, u"Exterior Back"_s));
        } else {
            EXPECT_THAT(bins, SizeIs(1)) << identifier.toStdString();
        }
    }
}

TEST(RoomLabel, IdentifiersFeedTheBinOfTheirRow)
{
    const auto &bins = RoomLabel::binsByIdentifier();
    EXPECT_THAT(bins.at(u"sink"_s), ElementsAre(u"Bathroom"_s));
    EXPECT_THAT(bins.at(u"neighbourhood"_s), ElementsAre(u"Aerial / Drone"_s));
    EXPECT_THAT(bins.at(u"neighborhood"_s), ElementsAre(u"Aerial / Drone"_s));
    EXPECT_THAT(bins.at(u"plant"_s), ElementsAre(u"Exterior Detail"_s));
}

TEST(RoomLabel, NamesOutsideTheTableAreNotFoundByName)
{
    for (const QString &name : {u"Unsorted"_s, u"Kitchen 2"_s, reviewKey()}) {
        EXPECT_FALSE(RoomLabel::byName().contains(name)) << name.toStdString();
    }
    EXPECT_EQ(reviewKey(), QString(QChar(1)) + u"needs-review"_s);
}

TEST(RoomLabel, AerialAndTalentAloneStayOutOfTheRankingOfRooms)
{
    EXPECT_THAT(RoomLabel::exclusiveBins(), UnorderedElementsAre(u"Aerial / Drone"_s, u"Agent / Talent"_s));
}

TEST(RoomLabel, RoomsThatAHouseMayHoldSeveralOfAreMultiInstance)
{
    std::vector<QString> multiple;
    std::vector<QString> shotTypes;
    for (const RoomLabel &label : RoomLabel::all()) {
        if (label.isMultiInstance) {
            multiple.push_back(label.name);
        }
        if (label.isShotType) {
            shotTypes.push_back(label.name);
        }
    }
    EXPECT_THAT(multiple, ElementsAre(u"Kitchen"_s, u"Bathroom"_s, u"Bedroom"_s, u"Living Room"_s, u"Dining Room"_s,
                                      u"Closet"_s, u"Exterior Detail"_s, u"Interior Detail"_s, u"Amenities / Other"_s));
    EXPECT_THAT(shotTypes,
                ElementsAre(u"Aerial / Drone"_s, u"Agent / Talent"_s, u"Exterior Detail"_s, u"Interior Detail"_s));
}

TEST(RoomLabel, EqualityAndHashCompareAllFiveFieldsIncludingTheOrderOfBothLists)
{
    const RoomLabel kitchen = RoomLabel::byName().at(u"Kitchen"_s);
    std::vector<RoomLabel> others(5, kitchen);
    others[0].name = u"Galley"_s;
    std::swap(others[1].visionIdentifiers[0], others[1].visionIdentifiers[1]);
    std::swap(others[2].prompts[0], others[2].prompts[1]);
    others[3].isMultiInstance = false;
    others[4].isShotType = true;
    for (const RoomLabel &other : others) {
        EXPECT_NE(kitchen, other);
        EXPECT_NE(qHash(kitchen), qHash(other));
    }
    EXPECT_EQ(kitchen, RoomLabel(kitchen));
    EXPECT_EQ(qHash(kitchen), qHash(RoomLabel(kitchen)));
}

TEST(RoomLabelDeathTest, ANameThatStandsTwiceStopsTheProgram)
{
    const std::vector<RoomLabel> labels{{.name = u"Kitchen"_s}, {.name = u"Kitchen"_s}};
    EXPECT_DEATH(RoomLabel::keyedByName(labels), "Duplicate values for key: 'Kitchen'");
}
