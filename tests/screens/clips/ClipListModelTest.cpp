#include "screens/clips/ClipListModel.h"

#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

#include "core/bins/RoomLabel.h"
#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ClipListModelTest = ModelTest;

} // namespace

TEST_F(ClipListModelTest, ShowsTheClipsOfTheSelectedBinByDate)
{
    makeClips({"kitchen 2", "pool 3", "kitchen 1"});
    ClipListModel clips;
    const QAbstractItemModelTester tester(&clips, QAbstractItemModelTester::FailureReportingMode::Warning);
    clips.setEngine(&engine);
    sortShoot();
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"kitchen 1"_s, u"kitchen 2"_s));
    EXPECT_THAT(column(clips, ClipListModel::FileNameRole), ElementsAre(u"kitchen 1.mov"_s, u"kitchen 2.mov"_s));
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"pool 3"_s));
    EXPECT_EQ(clips.rowCount(), 1);
    engine.setSelectedBin(std::nullopt);
    EXPECT_THAT(column(clips, ClipListModel::NameRole), IsEmpty());
}

TEST_F(ClipListModelTest, SaysWhyAClipIsUnderReview)
{
    makeClips({"dark 1", "pool 2"});
    ClipListModel clips;
    clips.setEngine(&engine);
    sortShoot();
    ASSERT_EQ(engine.selectedBin(), reviewKey());
    EXPECT_THAT(column(clips, ClipListModel::ReviewReasonRole), ElementsAre(u"couldn't read any frames"_s));
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_THAT(column(clips, ClipListModel::ReviewReasonRole), ElementsAre(QString()));
}

TEST_F(ClipListModelTest, ShowsAllClipsAsTheyLandAndMovesThemIntoOrderAtTheEnd)
{
    makeClips({"a 9", "b 8", "c 1"});
    ClipListModel clips;
    const QAbstractItemModelTester tester(&clips, QAbstractItemModelTester::FailureReportingMode::Warning);
    clips.setSource(ClipListModel::AllClips);
    clips.setEngine(&engine);
    QSignalSpy inserted(&clips, &QAbstractItemModel::rowsInserted);
    QSignalSpy moved(&clips, &QAbstractItemModel::rowsMoved);
    QSignalSpy removed(&clips, &QAbstractItemModel::rowsRemoved);
    sortShoot();
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"c 1"_s, u"b 8"_s, u"a 9"_s));
    EXPECT_EQ(inserted.count(), 2) << "one for each batch of two";
    EXPECT_GT(moved.count(), 0);
    EXPECT_EQ(removed.count(), 0) << "a clip that stays keeps its delegate";
}

TEST_F(ClipListModelTest, AClipThatChangesIsToldToHaveChangedAndNothingElseHappens)
{
    makeClips({"kitchen 1", "kitchen 2"});
    ClipListModel clips;
    clips.setEngine(&engine);
    sortShoot();
    QSignalSpy changed(&clips, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&clips, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&clips, &QAbstractItemModel::rowsRemoved);
    engine.setSecondBin(engine.clips()[1]->id, u"Pool"_s);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(reset.count() + removed.count(), 0);
    EXPECT_EQ(clips.index(1).data(ClipListModel::ExtraBinRole).toString(), u"Pool"_s);
}

TEST_F(ClipListModelTest, ActsOnTheClipOfARowAndOnNoneForARowThatIsNotThere)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3"});
    ClipListModel clips;
    clips.setEngine(&engine);
    sortShoot();
    for (const int row : {-1, 2}) {
        clips.open(row);
        clips.reassign(row, u"Pool"_s);
        clips.toggleExtraBin(row, u"Pool"_s);
        clips.confirm(row);
        clips.reveal(row);
    }
    EXPECT_FALSE(engine.hasPreview());
    EXPECT_EQ(clips.previewRow(), -1);
    EXPECT_THAT(revealed, IsEmpty());
    clips.open(1);
    EXPECT_EQ(engine.previewClip(), engine.clips()[1]);
    EXPECT_EQ(clips.previewRow(), 1);
    clips.toggleExtraBin(1, u"Pool"_s);
    EXPECT_EQ(clips.index(1).data(ClipListModel::ExtraBinsRole).toStringList(), QStringList(u"Pool"_s));
    clips.reveal(1);
    EXPECT_THAT(revealed, ElementsAre(FileUrl(folder / "kitchen 2.mov")));
    clips.reassign(0, u"Pool"_s);
    EXPECT_THAT(column(clips, ClipListModel::NameRole), ElementsAre(u"kitchen 2"_s));
}

TEST_F(ClipListModelTest, AnotherBinIsAnotherListAndAClipThatLeavesIsOneRemoval)
{
    makeClips({"kitchen 1", "kitchen 2", "kitchen 3", "pool 4", "pool 5"});
    ClipListModel clips;
    const QAbstractItemModelTester tester(&clips, QAbstractItemModelTester::FailureReportingMode::Warning);
    clips.setEngine(&engine);
    sortShoot();
    QSignalSpy reset(&clips, &QAbstractItemModel::modelReset);
    QSignalSpy removed(&clips, &QAbstractItemModel::rowsRemoved);
    engine.setSelectedBin(u"Pool"_s);
    EXPECT_EQ(reset.count(), 1);
    EXPECT_EQ(removed.count(), 0);
    engine.setSelectedBin(u"Kitchen"_s);
    clips.reassign(1, u"Pool"_s);
    EXPECT_EQ(reset.count(), 2);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 1);
}
