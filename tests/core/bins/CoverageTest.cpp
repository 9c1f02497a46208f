#include <gmock/gmock.h>

#include "core/bins/Coverage.h"
#include "core/bins/RoomLabel.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

ClipPtr filedClip(const QString &bin, std::vector<QString> extraBins = {}, bool needsReview = false)
{
    auto clip = std::make_shared<MediaClip>(FileUrl("/shoot/a.mov"));
    clip->primaryBin = bin;
    clip->extraBins = std::move(extraBins);
    clip->needsReview = needsReview;
    return clip;
}

BinCoverage rowOf(const Coverage &coverage, const QString &bin)
{
    const auto row = std::ranges::find(coverage.bins, bin, &BinCoverage::bin);
    return row == coverage.bins.end() ? BinCoverage() : *row;
}

} // namespace

TEST(Coverage, WithoutClipsEveryNeededBinIsMissingInTheTablesOrder)
{
    const Coverage none = coverage({}, {u"Pool"_s, u"Kitchen"_s, u"Bedroom"_s});
    EXPECT_THAT(none.missing, ElementsAre(u"Kitchen"_s, u"Bedroom"_s, u"Pool"_s));
    EXPECT_THAT(none.singleTakes, IsEmpty());
    ASSERT_THAT(none.bins, SizeIs(RoomLabel::all().size()));
    EXPECT_EQ(none.bins.front(), (BinCoverage{.bin = u"Kitchen"_s, .isNeeded = true}));
    EXPECT_EQ(rowOf(none, u"Garage"_s), (BinCoverage{.bin = u"Garage"_s}));
}

TEST(Coverage, ABinThatIsNotNeededIsNeverMissingAndItsSingleTakeIsNotNamed)
{
    const auto clips = std::to_array<ClipPtr>({filedClip(u"Garage"_s)});
    const Coverage found = coverage(clips, {});
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_THAT(found.singleTakes, IsEmpty());
    EXPECT_EQ(rowOf(found, u"Garage"_s), (BinCoverage{.bin = u"Garage"_s, .clips = 1, .ownClips = 1}));
}

TEST(Coverage, NumberedRoomsCountForTheirBinAndEachForItselfAsATake)
{
    const auto clips =
        std::to_array<ClipPtr>({filedClip(u"Bedroom 10"_s), filedClip(u"Bedroom 2"_s), filedClip(u"Bedroom 1"_s),
                                filedClip(u"Bedroom 1"_s), filedClip(u"Living Room 2"_s)});
    const Coverage found = coverage(clips, {u"Bedroom"_s, u"Living Room"_s});
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_EQ(rowOf(found, u"Bedroom"_s),
              (BinCoverage{.bin = u"Bedroom"_s, .isNeeded = true, .clips = 4, .ownClips = 4}));
    EXPECT_THAT(found.singleTakes, ElementsAre(u"Bedroom 2"_s, u"Bedroom 10"_s, u"Living Room 2"_s));
}

TEST(Coverage, ASecondBinIsCoveredAndIsNoTakeOfItsRoom)
{
    const auto clips =
        std::to_array<ClipPtr>({filedClip(u"Kitchen"_s, {u"Dining Room"_s}), filedClip(u"Kitchen"_s),
                                filedClip(u"Bedroom 1"_s, {u"Closet"_s, u"Bedroom"_s}), filedClip(u"Closet"_s)});
    const Coverage found = coverage(clips, {u"Kitchen"_s, u"Dining Room"_s, u"Closet"_s});
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_EQ(rowOf(found, u"Dining Room"_s),
              (BinCoverage{.bin = u"Dining Room"_s, .isNeeded = true, .clips = 1, .ownClips = 0}));
    EXPECT_EQ(rowOf(found, u"Bedroom"_s), (BinCoverage{.bin = u"Bedroom"_s, .clips = 1, .ownClips = 1}))
        << "a clip counts once for a bin";
    EXPECT_THAT(found.singleTakes, ElementsAre(u"Closet"_s));
}

TEST(Coverage, AClipUnderReviewCountsAndIsMarked)
{
    const auto clips = std::to_array<ClipPtr>({filedClip(u"Kitchen"_s, {u"Pool"_s}, true), filedClip(u"Kitchen"_s)});
    const Coverage found = coverage(clips, {u"Kitchen"_s, u"Pool"_s});
    EXPECT_THAT(found.missing, IsEmpty());
    EXPECT_EQ(rowOf(found, u"Kitchen"_s),
              (BinCoverage{.bin = u"Kitchen"_s, .isNeeded = true, .clips = 2, .ownClips = 2, .underReview = 1}));
    EXPECT_EQ(rowOf(found, u"Pool"_s),
              (BinCoverage{.bin = u"Pool"_s, .isNeeded = true, .clips = 1, .ownClips = 0, .underReview = 1}));
}

TEST(Coverage, UnsortedClipsAndUnknownNamesCoverNothing)
{
    const auto clips = std::to_array<ClipPtr>({filedClip(unsortedBin(), {}, true), filedClip(u"Ballroom"_s)});
    const Coverage found = coverage(clips, {u"Kitchen"_s, u"Ballroom"_s, unsortedBin()});
    EXPECT_THAT(found.missing, ElementsAre(u"Kitchen"_s));
    EXPECT_THAT(found.singleTakes, IsEmpty());
    EXPECT_TRUE(std::ranges::all_of(found.bins, [](const BinCoverage &row) { return row.clips == 0; }));
}

TEST(Coverage, TheDefaultNamesBinsOfTheTable)
{
    EXPECT_FALSE(defaultNeededBins().empty());
    for (const QString &bin : defaultNeededBins()) {
        EXPECT_TRUE(RoomLabel::byName().contains(bin)) << bin.toStdString();
    }
}
