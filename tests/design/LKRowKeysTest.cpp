// Keys among the rows of a list, without a window.
#include "design/LKRowKeys.h"

#include <gmock/gmock.h>
#include <QtCore/QVariant>

using namespace larkspan;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LKRowKeysTest : public testing::Test
{
protected:
    LKRowKeysTest()
    {
        QObject::connect(&keys, &LKRowKeys::walked, [this](int row) { walked.push_back(row); });
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

    LKRowKeys keys;
    std::vector<int> walked;
    bool isTaken = false;
};

} // namespace

TEST_F(LKRowKeysTest, UpAndDownWalkAColumnAndStopAtItsEnds)
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

TEST_F(LKRowKeysTest, LeftAndRightStayInTheirLineOfAGrid)
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

TEST_F(LKRowKeysTest, DownLeadsFromAColumnIntoTheNext)
{
    setRows(19, 10);
    EXPECT_THAT(press(Qt::Key_Down, 9), ElementsAre(10));
    EXPECT_THAT(press(Qt::Key_Up, 10), ElementsAre(9));
}

TEST_F(LKRowKeysTest, KeysThatMoveNothingAreLeftToOthers)
{
    setRows(3);
    for (const int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_Home, Qt::Key_Tab}) {
        EXPECT_THAT(press(key, 1), IsEmpty()) << key;
        EXPECT_FALSE(isTaken) << key;
    }
}

TEST_F(LKRowKeysTest, FromARowThatIsGoneUpLeadsToTheLast)
{
    setRows(3);
    EXPECT_THAT(press(Qt::Key_Up, 5), ElementsAre(2));
    EXPECT_THAT(press(Qt::Key_Down, 5), IsEmpty());
}

TEST_F(LKRowKeysTest, FromNoRowAnArrowLeadsToTheFirst)
{
    setRows(3);
    EXPECT_THAT(press(Qt::Key_Up, -1), ElementsAre(0));
    EXPECT_THAT(press(Qt::Key_Down, -1), ElementsAre(0));
}

TEST_F(LKRowKeysTest, HomeAndEndLeadToTheEndsOfAListThatTakesThem)
{
    setRows(5);
    keys.setProperty("takesEnds", true);
    EXPECT_THAT(press(Qt::Key_End, 1), ElementsAre(4));
    EXPECT_THAT(press(Qt::Key_Home, 4), ElementsAre(0));
    EXPECT_THAT(press(Qt::Key_End, -1), ElementsAre(4));
    EXPECT_THAT(press(Qt::Key_Home, -1), ElementsAre(0));
    EXPECT_THAT(press(Qt::Key_Home, 0), IsEmpty()) << "it is there already";
    EXPECT_TRUE(isTaken);
    for (const int key : {Qt::Key_PageDown, Qt::Key_PageUp}) {
        EXPECT_THAT(press(key, 2), IsEmpty()) << key;
        EXPECT_FALSE(isTaken) << key;
    }
}

TEST_F(LKRowKeysTest, PageKeysMoveByAPageAndStopAtTheEnds)
{
    setRows(10);
    keys.setProperty("rowsInPage", 4);
    EXPECT_THAT(press(Qt::Key_PageDown, 1), ElementsAre(5));
    EXPECT_THAT(press(Qt::Key_PageDown, 7), ElementsAre(9));
    EXPECT_THAT(press(Qt::Key_PageUp, 5), ElementsAre(1));
    EXPECT_THAT(press(Qt::Key_PageUp, 2), ElementsAre(0));
    EXPECT_THAT(press(Qt::Key_PageDown, 9), IsEmpty());
    EXPECT_TRUE(isTaken);
    EXPECT_THAT(press(Qt::Key_Home, 5), IsEmpty());
    EXPECT_FALSE(isTaken);
}

TEST_F(LKRowKeysTest, AColumnAndAPageMayBeOneRowHigh)
{
    setRows(5, 1);
    keys.setProperty("rowsInPage", 1);
    EXPECT_THAT(press(Qt::Key_Right, 1), ElementsAre(2));
    EXPECT_THAT(press(Qt::Key_Left, 2), ElementsAre(1));
    EXPECT_THAT(press(Qt::Key_PageDown, 1), ElementsAre(2));
    EXPECT_THAT(press(Qt::Key_PageUp, 2), ElementsAre(1));
}

TEST_F(LKRowKeysTest, ArrowsAreLeftToAViewThatHandlesThemItself)
{
    setRows(10, 5);
    keys.setProperty("takesArrows", false);
    keys.setProperty("takesEnds", true);
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right}) {
        EXPECT_THAT(press(key, 5), IsEmpty()) << key;
        EXPECT_FALSE(isTaken) << key;
    }
    EXPECT_THAT(press(Qt::Key_End, 5), ElementsAre(9));
}

TEST_F(LKRowKeysTest, NoKeyLeadsAnywhereInAnEmptyList)
{
    setRows(0);
    keys.setProperty("takesEnds", true);
    keys.setProperty("rowsInPage", 4);
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown}) {
        EXPECT_THAT(press(key, -1), IsEmpty()) << key;
        EXPECT_TRUE(isTaken) << key;
    }
}
