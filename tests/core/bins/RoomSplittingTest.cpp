#include <gmock/gmock.h>

#include "core/bins/RoomSplitting.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;

namespace {

// A clip whose print lies at a point on a line, so that distances can be read off.
ClipPtr clipAt(std::chrono::seconds time, std::optional<float> print, const QString &bin = u"Kitchen"_s)
{
    auto clip = std::make_shared<MediaClip>(FileUrl("/shoot/a.mov"));
    clip->creationDate = Date(time);
    clip->primaryBin = bin;
    if (print) {
        clip->featurePrint = std::make_shared<FeaturePrint>(std::vector<float>{*print});
    }
    return clip;
}

// Corners of a regular simplex: every two clips are equally far apart.
std::vector<ClipPtr> apart(float distance, std::vector<std::chrono::seconds> times)
{
    std::vector<ClipPtr> clips;
    for (std::size_t i = 0; i < times.size(); ++i) {
        auto clip = clipAt(times[i], std::nullopt);
        std::vector<float> corner(times.size(), 0.0f);
        corner[i] = distance / std::sqrt(2.0f);
        clip->featurePrint = std::make_shared<FeaturePrint>(corner);
        clips.push_back(clip);
    }
    return clips;
}

std::vector<QString> binsOf(const std::vector<ClipPtr> &clips)
{
    std::vector<QString> bins;
    for (const ClipPtr &clip : clips) {
        bins.push_back(clip->primaryBin);
    }
    return bins;
}

std::vector<QString> reasonsOf(const std::vector<ClipPtr> &clips)
{
    std::vector<QString> reasons;
    for (const ClipPtr &clip : clips) {
        EXPECT_EQ(clip->needsReview, !clip->reviewReason.isEmpty());
        reasons.push_back(clip->reviewReason);
    }
    return reasons;
}

std::vector<ClipPtr> split(std::vector<ClipPtr> clips)
{
    splitRepeatedRooms(clips);
    return clips;
}

} // namespace

TEST(RoomSplitting, ThreeTakesShotTogetherAtFourteenFormOneRoomAndRaiseNoQuestion)
{
    const auto clips = split(apart(14.0f, {0s, 90s, 180s}));
    EXPECT_THAT(binsOf(clips), Each(u"Kitchen"_s));
    EXPECT_THAT(reasonsOf(clips), Each(QString()));
}

TEST(RoomSplitting, TheSameTakesAnHourApartFormOneRoomWithAQuestionOnEachLaterOne)
{
    const auto clips = split(apart(14.0f, {0h, 1h, 2h}));
    EXPECT_THAT(binsOf(clips), Each(u"Kitchen"_s));
    EXPECT_THAT(reasonsOf(clips),
                ElementsAre(QString(), u"might be a different kitchen"_s, u"might be a different kitchen"_s));
}

TEST(RoomSplitting, ADistanceOfTwentyOpensANewRoom)
{
    const auto clips = split({clipAt(0h, 0.0f), clipAt(1h, 20.0f)});
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Kitchen 1"_s, u"Kitchen 2"_s));
    EXPECT_THAT(reasonsOf(clips), Each(QString()));
}

TEST(RoomSplitting, ADistanceOfTwentyAfterTheBonusOpensANewRoom)
{
    EXPECT_THAT(binsOf(split({clipAt(0s, 0.0f), clipAt(360s, 23.0f)})), ElementsAre(u"Kitchen 1"_s, u"Kitchen 2"_s));
    EXPECT_THAT(binsOf(split({clipAt(0s, 0.0f), clipAt(360s, 22.5f)})), Each(u"Kitchen"_s));
    EXPECT_THAT(binsOf(split({clipAt(0s, 0.0f), clipAt(361s, 22.5f)})), ElementsAre(u"Kitchen 1"_s, u"Kitchen 2"_s));
}

TEST(RoomSplitting, ADistanceOfExactlyTwelveJoinsWithoutAQuestion)
{
    const auto clips = split({clipAt(0h, 0.0f), clipAt(1h, 12.0f), clipAt(9h, 24.0f)});
    EXPECT_THAT(binsOf(clips), Each(u"Kitchen"_s)) << "one similar clip is enough";
    EXPECT_THAT(reasonsOf(clips), Each(QString()));
}

TEST(RoomSplitting, ADistanceBeyondTwelveJoinsWithAQuestion)
{
    const auto clips = split({clipAt(0h, 0.0f), clipAt(1h, 12.5f)});
    EXPECT_THAT(binsOf(clips), Each(u"Kitchen"_s));
    EXPECT_THAT(reasonsOf(clips), ElementsAre(QString(), u"might be a different kitchen"_s));
}

TEST(RoomSplitting, TheNearestClipOfARoomCountsWhereverItStands)
{
    const auto clips = split({clipAt(0h, 10.0f), clipAt(1h, 0.0f), clipAt(2h, 21.0f)});
    EXPECT_THAT(binsOf(clips), Each(u"Kitchen"_s));
    EXPECT_THAT(reasonsOf(clips), Each(QString()));
}

TEST(RoomSplitting, RoomsAreNumberedByTheDateOfTheirFirstClip)
{
    const auto clips =
        split({clipAt(5h, 100.0f, u"Bedroom"_s), clipAt(1h, 0.0f, u"Bedroom"_s), clipAt(9h, 1.0f, u"Bedroom"_s)});
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Bedroom 2"_s, u"Bedroom 1"_s, u"Bedroom 1"_s));
}

TEST(RoomSplitting, OfficesAndUnsortedClipsAreNeverSplit)
{
    for (const QString &bin : {u"Office"_s, u"Unsorted"_s, QString()}) {
        EXPECT_THAT(binsOf(split({clipAt(0h, 0.0f, bin), clipAt(1h, 100.0f, bin)})), Each(bin));
    }
}

TEST(RoomSplitting, AClipWithoutAPrintOpensARoomOfItsOwn)
{
    const auto clips = split({clipAt(0s, 0.0f), clipAt(1s, std::nullopt), clipAt(2s, 1.0f)});
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Kitchen 1"_s, u"Kitchen 2"_s, u"Kitchen 1"_s));
}

TEST(RoomSplitting, OnATieTheEarlierRoomIsJoined)
{
    const auto clips = split({clipAt(0h, 0.0f), clipAt(1h, 20.0f), clipAt(2h, 10.0f)});
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Kitchen 1"_s, u"Kitchen 2"_s, u"Kitchen 1"_s));
}

TEST(RoomSplitting, TheQuestionOverwritesAnEarlierReason)
{
    auto clips = apart(14.0f, {0h, 1h});
    clips[1]->needsReview = true;
    clips[1]->reviewReason = u"little to go on — 0.10 confidence"_s;
    EXPECT_THAT(reasonsOf(split(clips)), ElementsAre(QString(), u"might be a different kitchen"_s));
}

TEST(RoomSplitting, ExtraBinsAreNeitherSplitNorRenamed)
{
    auto clips = std::vector{clipAt(0h, 0.0f, u"Pool"_s), clipAt(1h, 100.0f, u"Pool"_s)};
    clips[0]->extraBins = clips[1]->extraBins = {u"Kitchen"_s};
    split(clips);
    EXPECT_THAT(clips[1]->extraBins, ElementsAre(u"Kitchen"_s));
}

TEST(Renumbering, GapsAreClosedAtExport)
{
    const std::vector clips{clipAt(0h, {}, u"Kitchen 1"_s), clipAt(1h, {}, u"Kitchen 3"_s)};
    renumberSplitBins(clips);
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Kitchen 1"_s, u"Kitchen 2"_s));
}

TEST(Renumbering, ANumberWithoutASiblingGoes)
{
    const std::vector clips{clipAt(0h, {}, u"Kitchen 3"_s), clipAt(1h, {}, u"Kitchen 3"_s),
                            clipAt(2h, {}, u"Living Room 2"_s)};
    renumberSplitBins(clips);
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Kitchen"_s, u"Kitchen"_s, u"Living Room"_s));
}

TEST(Renumbering, GroupsAreOrderedByTheirEarliestClip)
{
    const std::vector clips{clipAt(9h, {}, u"Bedroom 1"_s), clipAt(2h, {}, u"Bedroom 2"_s),
                            clipAt(5h, {}, u"Bedroom 10"_s), clipAt(1h, {}, u"Bedroom 10"_s)};
    renumberSplitBins(clips);
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Bedroom 3"_s, u"Bedroom 2"_s, u"Bedroom 1"_s, u"Bedroom 1"_s));
}

TEST(Renumbering, APlainBinBesideANumberedOneStaysPlain)
{
    const std::vector clips{clipAt(0h, {}, u"Kitchen"_s), clipAt(1h, {}, u"Kitchen 1"_s),
                            clipAt(2h, {}, u"Kitchen 2"_s), clipAt(3h, {}, u"7"_s)};
    renumberSplitBins(clips);
    EXPECT_THAT(binsOf(clips), ElementsAre(u"Kitchen"_s, u"Kitchen 1"_s, u"Kitchen 2"_s, u"7"_s));
}

TEST(Renumbering, ATagFollowsItsRoomToTheNewName)
{
    const std::vector clips{clipAt(0h, {}, u"Kitchen 3"_s), clipAt(1h, {}, u"Pool"_s), clipAt(2h, {}, u"Pool"_s)};
    clips[1]->extraBins = {u"Kitchen 3"_s, u"Garage"_s};
    clips[2]->extraBins = {u"Bedroom 2"_s};
    EXPECT_THAT(renumberSplitBins(clips), ElementsAre(testing::Pair(u"Kitchen 3"_s, u"Kitchen"_s)));
    EXPECT_THAT(clips[1]->extraBins, ElementsAre(u"Kitchen"_s, u"Garage"_s));
    EXPECT_THAT(clips[2]->extraBins, ElementsAre(u"Bedroom 2"_s)) << "a tag without a room stays as it is";
}
