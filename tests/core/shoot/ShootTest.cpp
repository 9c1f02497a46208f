// The clips of a shoot, their bins and their edits as a plain value, without an engine.
#include <gmock/gmock.h>

#include "tests/core/clips/NamedClips.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

TEST(Shoot, WithoutClipsHasNoBinsButOffersThoseOfTheTable)
{
    const Shoot none;
    EXPECT_EQ(none.clipCount(), 0);
    EXPECT_THAT(none.binCounts(), IsEmpty());
    EXPECT_EQ(none.firstBin(), std::nullopt);
    EXPECT_EQ(none.find(QUuid::createUuid()), nullptr);
    EXPECT_THAT(none.binChoices(), SizeIs(20));
}

TEST(Shoot, ClipsStandInFileOrderDuringASortAndByDateAfterIt)
{
    Shoot shoot;
    shoot.append(namedClips({u"pool 2"_s, u"kitchen 3"_s}));
    shoot.append(namedClips({u"pool 1"_s}));
    EXPECT_THAT(clipNames(shoot.clips()), ElementsAre(u"pool 2"_s, u"kitchen 3"_s, u"pool 1"_s));
    shoot.arrange(false);
    EXPECT_THAT(clipNames(shoot.clips()), ElementsAre(u"pool 1"_s, u"pool 2"_s, u"kitchen 3"_s));
}

TEST(Shoot, StoredClipsAreOrderedByDateToo)
{
    const Shoot shoot(namedClips({u"pool 2"_s, u"kitchen 1"_s}));
    EXPECT_THAT(clipNames(shoot.clips()), ElementsAre(u"kitchen 1"_s, u"pool 2"_s));
}

TEST(Shoot, TheBinsInUseAreListedByNameWhateverTheirSize)
{
    EXPECT_THAT(fiveClips().usedBins(), ElementsAre(u"Kitchen"_s, u"Pool"_s, u"Unsorted"_s));
}

TEST(Shoot, AClipIsFoundByItsIdHoweverItCame)
{
    Shoot shoot(namedClips({u"pool 1"_s}));
    shoot.append(namedClips({u"kitchen 2"_s}));
    for (const ClipPtr &clip : shoot.clips()) {
        EXPECT_EQ(shoot.find(clip->id), clip);
    }
    EXPECT_EQ(shoot.find(QUuid::createUuid()), nullptr);
}

TEST(Shoot, RepeatedRoomsAreToldApartOnlyOnRequest)
{
    for (const bool splits : {false, true}) {
        auto clips = namedClips({u"kitchen 1"_s, u"kitchen 2"_s}); // without prints, so rooms of their own
        Shoot shoot(std::move(clips));
        shoot.arrange(splits);
        EXPECT_EQ(shoot.binCount(), splits ? 2 : 1);
    }
}

TEST(Shoot, ClipsTallerThanWideAreCounted)
{
    const Shoot shoot(namedClips({u"pool 1"_s, u"pool 2"_s}));
    shoot.clips().front()->displaySize = {1080, 1920};
    EXPECT_EQ(shoot.verticalCount(), 1);
}

TEST(Shoot, PickersOfferEveryBinInUseAndInTheTable)
{
    const auto clips = namedClips({u"pool 1"_s});
    clips.front()->primaryBin = u"Kitchen 2"_s;
    clips.front()->extraBins = {u"Pool"_s};
    const Shoot shoot(clips);
    EXPECT_THAT(shoot.usedBins(), ElementsAre(u"Kitchen 2"_s, u"Pool"_s));
    const auto choices = shoot.binChoices();
    EXPECT_THAT(choices, SizeIs(21));
    EXPECT_TRUE(std::is_sorted(choices.begin(), choices.end()));
    EXPECT_THAT(choices, IsSupersetOf({u"Kitchen"_s, u"Kitchen 2"_s, u"Unsorted"_s}));
    EXPECT_THAT(shoot.clipsInBin(u"Pool"_s), SizeIs(1));
    EXPECT_THAT(shoot.clipsInBin(u"Kitchen"_s), IsEmpty());
}

TEST(Shoot, BinsOfEqualSizeAreListedByName)
{
    const Shoot shoot(namedClips({u"pool 1"_s, u"garage 2"_s, u"bedroom 3"_s, u"bedroom 4"_s}));
    EXPECT_THAT(shoot.binCounts(),
                ElementsAre(BinCount{u"Bedroom"_s, 2}, BinCount{u"Garage"_s, 1}, BinCount{u"Pool"_s, 1}));
    EXPECT_NE(qHash(shoot.binCounts()[1]), qHash(shoot.binCounts()[2]));
}

TEST(Shoot, TheClipsOfABinAreInOrderOfDate)
{
    const Shoot shoot(namedClips({u"bedroom 1"_s, u"bedroom 2"_s, u"pool 3"_s}));
    shoot.clips().front()->creationDate += std::chrono::hours(9);
    EXPECT_THAT(clipNames(shoot.clipsInBin(u"Bedroom"_s)), ElementsAre(u"bedroom 2"_s, u"bedroom 1"_s));
}

TEST(Shoot, OpensWithTheReviewAndWithTheFullestBinOnceThatIsEmpty)
{
    Shoot shoot = fiveClips();
    EXPECT_EQ(shoot.firstBin(), reviewKey());
    EXPECT_THAT(clipNames(shoot.clipsInBin(reviewKey())), ElementsAre(u"dark 1"_s, u"dark 2"_s));
    shoot.confirmAll();
    EXPECT_EQ(shoot.reviewCount(), 0);
    EXPECT_EQ(shoot.firstBin(), u"Pool"_s) << "of two bins of equal size the one whose name sorts first";
    EXPECT_THAT(shoot.confirmedReview(), SizeIs(2)) << "clips that were sure are not among them";
}

TEST(Shoot, AnEditOfAClipThatIsGoneOrWithoutABinIsNone)
{
    Shoot shoot = fiveClips();
    const ShootState sorted = stateOf(shoot);
    const QUuid gone = QUuid::createUuid();
    const QUuid kitchen = clipNamed(shoot, u"kitchen 3"_s)->id;
    EXPECT_FALSE(shoot.reassign(gone, u"Pool"_s));
    EXPECT_FALSE(shoot.toggleExtraBin(gone, u"Pool"_s));
    EXPECT_FALSE(shoot.setSecondBin(gone, u"Pool"_s));
    EXPECT_FALSE(shoot.confirm(gone));
    EXPECT_FALSE(shoot.reassign(kitchen, QString()));
    EXPECT_FALSE(shoot.toggleExtraBin(kitchen, QString()));
    EXPECT_FALSE(shoot.toggleExtraBin(kitchen, u"Kitchen"_s)) << "the bin that the clip is in";
    EXPECT_EQ(stateOf(shoot), sorted);
    EXPECT_EQ(shoot.editToUndo(), nullptr);
}

TEST(Shoot, ReassigningMovesTheClipAndTakesItOffTheReview)
{
    Shoot shoot = fiveClips();
    const ClipPtr dark = clipNamed(shoot, u"dark 1"_s);
    dark->extraBins = {u"Pool"_s};
    EXPECT_TRUE(shoot.reassign(dark->id, u"Garage"_s));
    EXPECT_EQ(dark->primaryBin, u"Garage"_s);
    EXPECT_THAT(dark->extraBins, ElementsAre(u"Pool"_s)) << "further bins stay";
    EXPECT_FALSE(shoot.isUnderReview(*dark));
    EXPECT_EQ(dark->reviewReason, QString());
    EXPECT_THAT(shoot.confirmedReview(), ElementsAre(dark->id));
    EXPECT_EQ(shoot.reviewCount(), 1);
}

TEST(Shoot, ReassigningToABinThatTheClipIsTaggedWithHidesTheDouble)
{
    Shoot shoot = fiveClips();
    const ClipPtr kitchen = clipNamed(shoot, u"kitchen 3"_s);
    kitchen->extraBins = {u"Pool"_s};
    EXPECT_TRUE(shoot.reassign(kitchen->id, u"Pool"_s));
    EXPECT_THAT(kitchen->extraBins, ElementsAre(u"Pool"_s));
    EXPECT_THAT(kitchen->bins(), ElementsAre(u"Pool"_s));
}

TEST(Shoot, ReassigningAClipThatWasConfirmedKeepsItOffTheReview)
{
    Shoot shoot = fiveClips();
    const ClipPtr dark = clipNamed(shoot, u"dark 1"_s);
    EXPECT_TRUE(shoot.confirm(dark->id));
    EXPECT_TRUE(shoot.reassign(dark->id, u"Unsorted"_s));
    EXPECT_FALSE(shoot.isUnderReview(*dark));
    EXPECT_THAT(shoot.confirmedReview(), SizeIs(1));
}

TEST(Shoot, AnExtraBinThatBecameThePrimaryOneCanStillBeTakenOff)
{
    Shoot shoot = fiveClips();
    const ClipPtr kitchen = clipNamed(shoot, u"kitchen 3"_s);
    EXPECT_TRUE(shoot.toggleExtraBin(kitchen->id, u"Pool"_s));
    EXPECT_TRUE(shoot.reassign(kitchen->id, u"Pool"_s));
    EXPECT_TRUE(shoot.toggleExtraBin(kitchen->id, u"Pool"_s));
    EXPECT_THAT(kitchen->extraBins, IsEmpty());
    EXPECT_THAT(kitchen->bins(), ElementsAre(u"Pool"_s));
}

// Edits, exports, undoing and redoing in any order, against the states that were met on the way.
