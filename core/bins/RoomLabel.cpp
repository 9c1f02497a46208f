#include "core/bins/RoomLabel.h"

#include <QtCore/QHash>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

const std::vector<RoomLabel> &RoomLabel::all()
{
    // "patio" feeds two bins, and both spellings of neighbourhood stand in one row, on purpose.
    static const std::vector<RoomLabel> labels{
        {.name = u"Kitchen"_s,
         .visionIdentifiers = {u"kitchen"_s, u"kitchen_appliance"_s, u"stove"_s, u"oven"_s, u"refrigerator"_s,
                               u"microwave"_s, u"countertop"_s, u"cabinetry"_s, u"cooking"_s, u"kitchen_island"_s,
                               u"dishwasher"_s, u"kitchen_utensil"_s},
         .prompts = {u"the kitchen of a house with cabinets and countertops"_s,
                     u"a kitchen island with bar stools in a home"_s},
         .isMultiInstance = true,
         .isShotType = false},
        {.name = u"Bathroom"_s,
         .visionIdentifiers = {u"bathroom"_s, u"toilet"_s, u"shower"_s, u"bathtub"_s, u"bidet"_s,
                               u"bathroom_accessory"_s, u"sink"_s, u"mirror"_s, u"vanity"_s},
         .prompts = {u"a residential bathroom with a sink and mirror"_s, u"a bathroom with a shower or bathtub"_s},
         .isMultiInstance = true,
         .isShotType = false},
        {.name = u"Bedroom"_s,
         .visionIdentifiers = {u"bedroom"_s, u"bed"_s, u"mattress"_s, u"bedding"_s, u"headboard"_s, u"pillow"_s,
                               u"nightstand"_s, u"dormitory"_s},
         .prompts = {u"a bedroom in a house with a bed"_s},
         .isMultiInstance = true,
         .isShotType = false},
        {.name = u"Living Room"_s,
         .visionIdentifiers = {u"living_room"_s, u"sofa"_s, u"couch"_s, u"loveseat"_s, u"fireplace"_s, u"television"_s,
                               u"coffee_table"_s, u"armchair"_s, u"recliner"_s, u"family_room"_s, u"sectional"_s},
         .prompts = {u"a living room with a sofa"_s, u"a great room with exposed wood ceiling beams and seating"_s},
         .isMultiInstance = true,
         .isShotType = false},
        {.name = u"Dining Room"_s,
         .visionIdentifiers = {u"dining_room"_s, u"dining_table"_s, u"chandelier"_s, u"tableware"_s, u"dining"_s,
                               u"banquet"_s},
         .prompts = {u"a dining room with a dining table and chairs"_s, u"a dining table under a chandelier"_s},
         .isMultiInstance = true,
         .isShotType = false},
        {.name = u"Office"_s,
         .visionIdentifiers = {u"office"_s, u"home_office"_s, u"desk"_s, u"computer"_s, u"bookcase"_s, u"study"_s,
                               u"office_supplies"_s, u"monitor"_s},
         .prompts = {u"a home office with a desk"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Laundry Room"_s,
         .visionIdentifiers = {u"laundry"_s, u"laundry_room"_s, u"washing_machine"_s, u"clothes_dryer"_s},
         .prompts = {u"a laundry room with a washer and dryer"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Garage"_s,
         .visionIdentifiers = {u"garage"_s, u"garage_door"_s, u"parking_garage"_s},
         .prompts = {u"the inside of a residential garage"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Hallway / Stairs"_s,
         .visionIdentifiers = {u"hallway"_s, u"corridor"_s, u"staircase"_s, u"stairs"_s, u"stairway"_s, u"banister"_s,
                               u"foyer"_s, u"entrance_hall"_s, u"doorway"_s, u"door"_s},
         .prompts = {u"a hallway inside a house"_s, u"a staircase inside a house"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Closet"_s,
         .visionIdentifiers = {u"closet"_s, u"wardrobe"_s, u"walk_in_closet"_s, u"clothing_rack"_s},
         .prompts = {u"a walk-in closet with shelves and hanging clothes"_s},
         .isMultiInstance = true,
         .isShotType = false},
        {.name = u"Exterior Front"_s,
         .visionIdentifiers = {u"house"_s, u"mansion"_s, u"residential_area"_s, u"facade"_s, u"driveway"_s,
                               u"front_yard"_s, u"roof"_s, u"cottage"_s, u"villa"_s, u"real_estate"_s, u"siding"_s,
                               u"building"_s},
         .prompts = {u"the front exterior of a house from the street"_s,
                     u"a driveway leading to a residential garage"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Entry / Courtyard"_s,
         .visionIdentifiers = {u"courtyard"_s, u"porch"_s, u"fountain"_s, u"gate"_s, u"archway"_s, u"entrance"_s,
                               u"walkway"_s, u"hedge"_s, u"patio"_s},
         .prompts = {u"a front entry courtyard with a fountain"_s,
                     u"a walkway with hedges leading to the front door"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Exterior Back"_s,
         .visionIdentifiers = {u"backyard"_s, u"yard"_s, u"garden"_s, u"patio"_s, u"deck"_s, u"lawn"_s, u"pergola"_s,
                               u"outdoor_furniture"_s, u"fire_pit"_s, u"barbecue"_s, u"gazebo"_s, u"terrace"_s,
                               u"grass"_s},
         .prompts = {u"a covered back patio with outdoor furniture"_s,
                     u"an outdoor lounge area with a fire pit behind a house"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Pool"_s,
         .visionIdentifiers = {u"swimming_pool"_s, u"pool"_s, u"jacuzzi"_s, u"hot_tub"_s, u"poolside"_s,
                               u"diving_board"_s, u"water"_s},
         .prompts = {u"a swimming pool in the backyard of a house"_s, u"a pool and spa of a residential home"_s},
         .isMultiInstance = false,
         .isShotType = false},
        {.name = u"Aerial / Drone"_s,
         .visionIdentifiers = {u"aerial_photography"_s, u"bird_s_eye_view"_s, u"cityscape"_s, u"suburb"_s,
                               u"landscape"_s, u"mountain"_s, u"valley"_s, u"lake"_s, u"coast"_s, u"neighbourhood"_s,
                               u"neighborhood"_s, u"town"_s, u"village"_s},
         .prompts = {u"an aerial drone photo of a house and neighborhood from above"_s},
         .isMultiInstance = false,
         .isShotType = true},
        {.name = u"Agent / Talent"_s,
         .visionIdentifiers = {u"person"_s, u"people"_s, u"man"_s, u"woman"_s, u"portrait"_s, u"human_face"_s,
                               u"crowd"_s, u"selfie"_s},
         .prompts = {u"a person standing and posing in front of a house"_s,
                     u"a real estate agent walking toward the camera"_s},
         .isMultiInstance = false,
         .isShotType = true},
        {.name = u"Exterior Detail"_s,
         .visionIdentifiers = {u"plant"_s, u"flower"_s, u"leaf"_s, u"foliage"_s, u"tree"_s, u"branch"_s, u"petal"_s,
                               u"blossom"_s, u"shrub"_s, u"succulent"_s, u"cactus"_s},
         .prompts = {u"a close up of plants, flowers or landscaping"_s},
         .isMultiInstance = true,
         .isShotType = true},
        {.name = u"Interior Detail"_s,
         .visionIdentifiers = {u"vase"_s, u"shelf"_s, u"still_life"_s, u"ornament"_s, u"picture_frame"_s, u"candle"_s,
                               u"book"_s, u"sculpture"_s, u"pottery"_s, u"decor"_s},
         .prompts = {u"a close up of decor objects on a shelf"_s},
         .isMultiInstance = true,
         .isShotType = true},
        {.name = u"Amenities / Other"_s,
         .visionIdentifiers = {u"gym"_s, u"exercise_equipment"_s, u"home_theater"_s, u"wine_cellar"_s,
                               u"billiard_table"_s, u"sauna"_s, u"bar"_s},
         .prompts = {u"a home gym with exercise equipment"_s, u"a wine cellar in a house"_s},
         .isMultiInstance = true,
         .isShotType = false},
    };
    return labels;
}

std::map<QString, RoomLabel> RoomLabel::keyedByName(std::span<const RoomLabel> labels)
{
    std::map<QString, RoomLabel> result;
    for (const RoomLabel &label : labels) {
        if (!result.emplace(label.name, label).second) {
            qFatal("Duplicate values for key: '%s'", qUtf8Printable(label.name));
        }
    }
    return result;
}

const std::map<QString, RoomLabel> &RoomLabel::byName()
{
    static const auto labels = keyedByName(all());
    return labels;
}

const std::map<QString, std::vector<QString>> &RoomLabel::binsByIdentifier()
{
    static const auto bins = [] {
        std::map<QString, std::vector<QString>> result;
        for (const RoomLabel &label : all()) {
            for (const QString &identifier : label.visionIdentifiers) {
                result[identifier].push_back(label.name);
            }
        }
        return result;
    }();
    return bins;
}

const std::set<QString> &RoomLabel::exclusiveBins()
{
    static const std::set<QString> bins{u"Aerial / Drone"_s, u"Agent / Talent"_s};
    return bins;
}

std::size_t qHash(const RoomLabel &label, std::size_t seed) noexcept
{
    seed = qHashMulti(seed, label.name);
    seed = qHashRange(label.visionIdentifiers.begin(), label.visionIdentifiers.end(), seed);
    seed = qHashRange(label.prompts.begin(), label.prompts.end(), seed);
    return qHashMulti(seed, label.isMultiInstance, label.isShotType);
}

QString unsortedBin()
{
    return u"Unsorted"_s;
}

QString reviewKey()
{
    return u"\u0001needs-review"_s;
}

QString reviewTitle()
{
    return u"Needs a look"_s;
}

} // namespace larkspan
