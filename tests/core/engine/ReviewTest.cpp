// The editor's review after a sort.
#include "core/bins/RoomLabel.h"
#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A sorted shoot of two pools, a kitchen and two clips under review, with every notification and save counted.
class ReviewTest : public SortEngineTest
{
protected:
    void SetUp() override
    {
        makeClips({"dark 1", "dark 2", "kitchen 3", "pool 4", "pool 5"});
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        ASSERT_EQ(engine.selectedBin(), reviewKey());
        QObject::connect(&engine, &SortEngine::clipsChanged, [this] { ++notified; });
        QObject::connect(&engine, &SortEngine::projectsChanged, [this] { ++saves; });
    }

    ClipPtr clip(const QString &name) const
    {
        for (const ClipPtr &clip : engine.clips()) {
            if (clip->url.baseName() == name) {
                return clip;
            }
        }
        return nullptr;
    }

    // One notification and one save since the last call.
    void expectOneChange()
    {
        EXPECT_EQ(std::exchange(notified, 0), 1);
        EXPECT_EQ(std::exchange(saves, 0), 1);
    }

    SortEngine engine{seams()};
    int notified = 0;
    int saves = 0;
};

TEST_F(ReviewTest, ReassigningMovesTheClipAndTakesItOffTheReview)
{
    const ClipPtr dark = clip(u"dark 1"_s);
    dark->extraBins = {u"Pool"_s};
    dark->confidence = 0.25;
    engine.reassign(dark->id, u"Garage"_s);
    EXPECT_EQ(dark->primaryBin, u"Garage"_s);
    EXPECT_FALSE(dark->needsReview);
    EXPECT_EQ(dark->reviewReason, QString());
    EXPECT_THAT(engine.confirmedReview(), ElementsAre(dark->id));
    EXPECT_THAT(dark->extraBins, ElementsAre(u"Pool"_s)) << "further bins and scores stay";
    EXPECT_EQ(dark->confidence, 0.25);
    EXPECT_EQ(engine.reviewCount(), 1);
    EXPECT_EQ(engine.selectedBin(), reviewKey()) << "one clip is left to look at";
    expectOneChange();
    EXPECT_EQ(saved()->clips.front().primaryBin, u"Garage"_s);
    EXPECT_EQ(saved()->summary.reviewCount, 1);
}

TEST_F(ReviewTest, ReassigningTheLastClipOfABinRemovesItsRowAndLeavesTheSelection)
{
    engine.setSelectedBin(u"Kitchen"_s);
    engine.reassign(clip(u"kitchen 3"_s)->id, u"Pool"_s);
    EXPECT_THAT(engine.binCounts(), ElementsAre(BinCount{u"Pool"_s, 3}, BinCount{u"Unsorted"_s, 2}));
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s) << "only the review list is left by itself";
}

TEST_F(ReviewTest, AnExtraBinIsToggledOnAtTheEndAndOffAgainAndTheReviewStateStays)
{
    const ClipPtr dark = clip(u"dark 1"_s);
    engine.toggleExtraBin(dark->id, u"Pool"_s);
    expectOneChange();
    engine.toggleExtraBin(dark->id, u"Kitchen"_s);
    EXPECT_THAT(dark->extraBins, ElementsAre(u"Pool"_s, u"Kitchen"_s));
    EXPECT_THAT(namesOf(engine.clipsInBin(u"Pool"_s)), ElementsAre(u"dark 1"_s, u"pool 4"_s, u"pool 5"_s));
    expectOneChange();
    engine.toggleExtraBin(dark->id, u"Pool"_s);
    EXPECT_THAT(dark->extraBins, ElementsAre(u"Kitchen"_s));
    EXPECT_TRUE(engine.isUnderReview(*dark));
    EXPECT_THAT(engine.confirmedReview(), IsEmpty());
    expectOneChange();
}

TEST_F(ReviewTest, ConfirmingAcceptsTheClipWhereItIs)
{
    const ClipPtr dark = clip(u"dark 2"_s);
    engine.confirm(dark->id);
    EXPECT_EQ(dark->primaryBin, u"Unsorted"_s);
    EXPECT_FALSE(dark->needsReview);
    EXPECT_EQ(dark->reviewReason, QString());
    EXPECT_THAT(namesOf(engine.clipsInBin(reviewKey())), ElementsAre(u"dark 1"_s));
    EXPECT_EQ(engine.selectedBin(), reviewKey());
    expectOneChange();
}

TEST_F(ReviewTest, ConfirmingTheLastClipUnderReviewMovesTheSelectionToTheLargestBin)
{
    engine.reassign(clip(u"dark 1"_s)->id, u"Pool"_s);
    engine.confirm(clip(u"dark 2"_s)->id);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
    EXPECT_EQ(engine.reviewCount(), 0);
}

TEST_F(ReviewTest, ConfirmingOutsideTheReviewListLeavesTheSelection)
{
    engine.setSelectedBin(u"Kitchen"_s);
    engine.confirmAll();
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
}

TEST_F(ReviewTest, ConfirmAllAcceptsEveryClipUnderReviewInOneStep)
{
    const std::set<QUuid> dark{clip(u"dark 1"_s)->id, clip(u"dark 2"_s)->id};
    engine.confirmAll();
    EXPECT_EQ(engine.reviewCount(), 0);
    EXPECT_EQ(engine.confirmedReview(), dark) << "clips that were sure are not among them";
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s) << "of two bins of equal size the one whose name sorts first";
    EXPECT_EQ(saved()->summary.reviewCount, 0);
    expectOneChange();
}

TEST_F(ReviewTest, AClipThatIsGoneOrABinWithoutANameChangesNothing)
{
    engine.reassign(QUuid::createUuid(), u"Pool"_s);
    engine.toggleExtraBin(QUuid::createUuid(), u"Pool"_s);
    engine.confirm(QUuid::createUuid());
    engine.reassign(clip(u"kitchen 3"_s)->id, QString());
    engine.toggleExtraBin(clip(u"kitchen 3"_s)->id, QString());
    EXPECT_EQ(clip(u"kitchen 3"_s)->primaryBin, u"Kitchen"_s);
    EXPECT_EQ(notified, 0);
    EXPECT_EQ(saves, 0);
}

TEST_F(ReviewTest, SortingAgainForgetsWhatTheEditorSettled)
{
    engine.confirmAll();
    engine.reassign(clip(u"kitchen 3"_s)->id, u"Pool"_s);
    engine.sortAgain();
    EXPECT_THAT(engine.confirmedReview(), IsEmpty());
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(clip(u"kitchen 3"_s)->primaryBin, u"Kitchen"_s);
    EXPECT_EQ(engine.reviewCount(), 2);
}

TEST_F(ReviewTest, ASecondBinReplacesTheFurtherOnesInOneChangeAndAnEmptyOneTakesThemOff)
{
    const ClipPtr pool = clip(u"pool 4"_s);
    engine.toggleExtraBin(pool->id, u"Kitchen"_s);
    expectOneChange();
    engine.setSecondBin(pool->id, u"Garage"_s);
    EXPECT_THAT(pool->extraBins, ElementsAre(u"Garage"_s));
    EXPECT_THAT(saved()->clips[3].extraBins, ElementsAre(u"Garage"_s));
    expectOneChange();
    engine.setSecondBin(pool->id, QString());
    EXPECT_THAT(pool->extraBins, IsEmpty());
    expectOneChange();
    engine.setSecondBin(QUuid::createUuid(), u"Garage"_s);
    EXPECT_EQ(notified, 0) << "a clip that is gone";
    EXPECT_EQ(saves, 0);
}

TEST_F(ReviewTest, ClosingTheGapsInTheNumbersAnnouncesTheNewNames)
{
    engine.reassign(clip(u"kitchen 3"_s)->id, u"Kitchen 3"_s);
    std::vector<QString> shown;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { shown = engine.usedBins(); });
    engine.closeGapsInBins();
    EXPECT_THAT(shown, ElementsAre(u"Kitchen"_s, u"Pool"_s, u"Unsorted"_s));
}

TEST_F(ReviewTest, AClipIsRevealedWhereItsFootageIsNow)
{
    const ClipPtr pool = clip(u"pool 4"_s);
    engine.revealClip(pool->id);
    pool->destinationURL = FileUrl(folder.write("Pool/pool 4.mov"));
    std::filesystem::remove(pool->url.path());
    engine.revealClip(pool->id);
    engine.revealClip(QUuid::createUuid());
    EXPECT_THAT(revealed, ElementsAre(pool->url, *pool->destinationURL));
}
