#include "screens/bins/BinListModel.h"

#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

#include "core/bins/RoomLabel.h"
#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::Pair;

namespace {

using BinListModelTest = ModelTest;

std::vector<std::pair<QString, int>> rowsOf(const BinListModel &bins)
{
    std::vector<std::pair<QString, int>> rows;
    for (int row = 0; row < bins.rowCount(); ++row) {
        const QModelIndex index = bins.index(row);
        rows.emplace_back(index.data(BinListModel::LabelRole).toString(), index.data(BinListModel::CountRole).toInt());
    }
    return rows;
}

} // namespace

TEST_F(BinListModelTest, ListsTheClipsToLookAtFirstThenTheBinsTheFullestFirst)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3", "dark 4"});
    BinListModel bins;
    const QAbstractItemModelTester tester(&bins, QAbstractItemModelTester::FailureReportingMode::Warning);
    bins.setEngine(&engine);
    sortShoot();
    EXPECT_THAT(rowsOf(bins), ElementsAre(Pair(u"Needs a look"_s, 1), Pair(u"Kitchen"_s, 2), Pair(u"Pool"_s, 1),
                                          Pair(u"Unsorted"_s, 1)));
    EXPECT_EQ(bins.index(0).data(BinListModel::BinRole).toString(), reviewKey());
    EXPECT_TRUE(bins.index(0).data(BinListModel::IsReviewRole).toBool());
    EXPECT_EQ(bins.selectedRow(), 0);
}

TEST_F(BinListModelTest, HasNoRowToLookAtWithoutClipsUnderReview)
{
    makeClips({"kitchen 1"});
    BinListModel bins;
    bins.setEngine(&engine);
    sortShoot();
    EXPECT_THAT(rowsOf(bins), ElementsAre(Pair(u"Kitchen"_s, 1)));
}

TEST_F(BinListModelTest, SelectingARowShowsItsBinAndARowThatIsNotThereChangesNothing)
{
    makeClips({"kitchen 1", "kitchen 2", "pool 3"});
    BinListModel bins;
    bins.setEngine(&engine);
    sortShoot();
    bins.select(1);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
    EXPECT_EQ(bins.selectedRow(), 1);
    bins.select(2);
    bins.select(-1);
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
}

TEST_F(BinListModelTest, TellsWhenCountsAreNotToBeShown)
{
    BinListModel bins;
    bins.setEngine(&engine);
    QSignalSpy changed(&bins, &BinListModel::showsCountsChanged);
    EXPECT_TRUE(bins.showsCounts());
    engine.setOptions({.showClipCounts = false});
    EXPECT_FALSE(bins.showsCounts());
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(BinListModelTest, IsEmptyAfterAReset)
{
    makeClips({"kitchen 1", "dark 2"});
    BinListModel bins;
    const QAbstractItemModelTester tester(&bins, QAbstractItemModelTester::FailureReportingMode::Warning);
    bins.setEngine(&engine);
    sortShoot();
    engine.reset();
    EXPECT_EQ(bins.rowCount(), 0);
    EXPECT_EQ(bins.selectedRow(), -1);
}
