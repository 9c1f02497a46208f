#include <gmock/gmock.h>
#include <QtCore/QStringList>

#include "core/bins/RoomLabel.h"

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

TEST(RoomLabel, EveryBinHasItsIdentifiersAndPromptsInTheirOrder)
{
    struct Row
    {
        QString name;
        QString identifiers; // apart by blanks
        QString prompts;     // apart by semicolons
    };
    const std::vector<Row> expected{
        {u"Kitchen"_s,
         u"kitchen kitchen_appliance stove oven refrigerator microwave countertop cabinetry cooking"
         u" kitchen_island dishwasher kitchen_utensil"_s,
         u"the kitchen of a house with cabinets and countertops"
         u"; a kitchen island with bar stools in a home"_s},
        {u"Bathroom"_s, u"bathroom toilet shower bathtub bidet bathroom_accessory sink mirror vanity"_s,
         u"a residential bathroom with a sink and mirror; a bathroom with a shower or bathtub"_s},
        {u"Bedroom"_s, u"bedroom bed mattress bedding headboard pillow nightstand dormitory"_s,
         u"a bedroom in a house with a bed"_s},
        {u"Living Room"_s,
         u"living_room sofa couch loveseat fireplace television coffee_table armchair recliner"
         u" family_room sectional"_s,
         u"a living room with a sofa; a great room with exposed wood ceiling beams and seating"_s},
        {u"Dining Room"_s, u"dining_room dining_table chandelier tableware dining banquet"_s,
         u"a dining room with a dining table and chairs; a dining table under a chandelier"_s},
        {u"Office"_s, u"office home_office desk computer bookcase study office_supplies monitor"_s,
         u"a home office with a desk"_s},
        {u"Laundry Room"_s, u"laundry laundry_room washing_machine clothes_dryer"_s,
         u"a laundry room with a washer and dryer"_s},
        {u"Garage"_s, u"garage garage_door parking_garage"_s, u"the inside of a residential garage"_s},
        {u"Hallway / Stairs"_s,
         u"hallway corridor staircase stairs stairway banister foyer entrance_hall doorway door"_s,
         u"a hallway inside a house; a staircase inside a house"_s},
        {u"Closet"_s, u"closet wardrobe walk_in_closet clothing_rack"_s,
         u"a walk-in closet with shelves and hanging clothes"_s},
        {u"Exterior Front"_s,
         u"house mansion residential_area facade driveway front_yard roof cottage villa real_estate"
         u" siding building"_s,
         u"the front exterior of a house from the street"
         u"; a driveway leading to a residential garage"_s},
        {u"Entry / Courtyard"_s, u"courtyard porch fountain gate archway entrance walkway hedge patio"_s,
         u"a front entry courtyard with a fountain; a walkway with hedges leading to the front door"_s},
        {u"Exterior Back"_s,
         u"backyard yard garden patio deck lawn pergola outdoor_furniture fire_pit barbecue gazebo"
         u" terrace grass"_s,
         u"a covered back patio with outdoor furniture"
         u"; an outdoor lounge area with a fire pit behind a house"_s},
        {u"Pool"_s, u"swimming_pool pool jacuzzi hot_tub poolside diving_board water"_s,
         u"a swimming pool in the backyard of a house; a pool and spa of a residential home"_s},
        {u"Aerial / Drone"_s,
         u"aerial_photography bird_s_eye_view cityscape suburb landscape mountain valley lake coast"
         u" neighbourhood neighborhood town village"_s,
         u"an aerial drone photo of a house and neighborhood from above"_s},
        {u"Agent / Talent"_s, u"person people man woman portrait human_face crowd selfie"_s,
         u"a person standing and posing in front of a house"
         u"; a real estate agent walking toward the camera"_s},
        {u"Exterior Detail"_s, u"plant flower leaf foliage tree branch petal blossom shrub succulent cactus"_s,
         u"a close up of plants, flowers or landscaping"_s},
        {u"Interior Detail"_s, u"vase shelf still_life ornament picture_frame candle book sculpture pottery decor"_s,
         u"a close up of decor objects on a shelf"_s},
        {u"Amenities / Other"_s, u"gym exercise_equipment home_theater wine_cellar billiard_table sauna bar"_s,
         u"a home gym with exercise equipment; a wine cellar in a house"_s},
    };
    const auto joined = [](const std::vector<QString> &texts, const QString &separator) {
        return QStringList(texts.begin(), texts.end()).join(separator);
    };
    ASSERT_THAT(RoomLabel::all(), SizeIs(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const RoomLabel &label = RoomLabel::all()[i];
        EXPECT_EQ(label.name, expected[i].name);
        EXPECT_EQ(joined(label.visionIdentifiers, u" "_s), expected[i].identifiers);
        EXPECT_EQ(joined(label.prompts, u"; "_s), expected[i].prompts);
    }
}

TEST(RoomLabel, NamesOutsideTheTableAreNotFoundByName)
{
    for (const QString &name : {u"Unsorted"_s, u"Kitchen 2"_s, reviewKey()}) {
        EXPECT_FALSE(RoomLabel::byName().contains(name)) << name.toStdString();
    }
    EXPECT_EQ(unsortedBin(), u"Unsorted"_s);
    EXPECT_EQ(reviewKey(), QString(QChar(1)) + u"needs-review"_s);
    EXPECT_EQ(reviewTitle(), u"Needs a look"_s);
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
