// Arrow keys among the rows of a list, without a window.
#include "shell/window/RowKeys.h"

#include <gmock/gmock.h>
#include <QtCore/QVariant>

using namespace larkspan;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RowKeysTest : public testing::Test
{
protected:
    RowKeysTest()
    {
        QObject::connect(&keys, &RowKeys::walked, [this](int row) { walked.push_back(row); });
    }

    void setRows(int count, int inColumn = 0)
    {
        keys.setProperty("rowCount", count);
        keys.setProperty("rowsInColumn", inColumn);
    }

    // Returns the rows that focus is sent to.
    std::vector<int> press(int key, int row)
    {
        walked.clear();
        isTaken = keys.take(key, row);
        return walked;
    }

    RowKeys keys;
    std::vector<int> walked;
    bool isTaken = false;
};

} // namespace

TEST_F(RowKeysTest, UpAndDownWalkAColumnAndStopAtItsEnds)
{
    setRows(3);
    EXPECT_THAT(press(Qt::Key_Down, 0), ElementsAre(1));
    EXPECT_THAT(press(Qt::Key_Down, 1), ElementsAre(2));
    EXPECT_THAT(press(Qt::Key_Up, 1), ElementsAre(0));
    EXPECT_THAT(press(Qt::Key_Down, 2), IsEmpty());
    EXPECT_TRUE(isTaken) << "an arrow at the end goes to nobody else";
    EXPECT_THAT(press(Qt::Key_Up, 0), IsEmpty());
    EXPECT_TRUE(isTaken);
}

TEST_F(RowKeysTest, LeftAndRightStayInTheirLineOfAGrid)
{
    setRows(19, 10);
    EXPECT_THAT(press(Qt::Key_Right, 3), ElementsAre(13));
    EXPECT_THAT(press(Qt::Key_Left, 13), ElementsAre(3));
    EXPECT_THAT(press(Qt::Key_Left, 10), ElementsAre(0));
    EXPECT_THAT(press(Qt::Key_Right, 8), ElementsAre(18));
    EXPECT_THAT(press(Qt::Key_Right, 9), IsEmpty()) << "the second column is shorter";
    EXPECT_THAT(press(Qt::Key_Left, 9), IsEmpty());
    EXPECT_TRUE(isTaken);
}

TEST_F(RowKeysTest, DownLeadsFromAColumnIntoTheNext)
{
    setRows(19, 10);
    EXPECT_THAT(press(Qt::Key_Down, 9), ElementsAre(10));
    EXPECT_THAT(press(Qt::Key_Up, 10), ElementsAre(9));
}

TEST_F(RowKeysTest, KeysThatMoveNothingAreLeftToOthers)
{
    setRows(3);
    for (const int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_Home, Qt::Key_Tab}) {
        EXPECT_THAT(press(key, 1), IsEmpty()) << key;
        EXPECT_FALSE(isTaken) << key;
    }
}

TEST_F(RowKeysTest, FromARowThatIsGoneUpLeadsToTheLast)
{
    setRows(3);
    EXPECT_THAT(press(Qt::Key_Up, 5), ElementsAre(2));
    EXPECT_THAT(press(Qt::Key_Down, 5), IsEmpty());
}

TEST_F(RowKeysTest, NoArrowLeadsAnywhereInAnEmptyList)
{
    setRows(0);
    EXPECT_THAT(press(Qt::Key_Down, -1), IsEmpty());
}
