#include "design/LKChoiceKeys.h"

#include <gmock/gmock.h>
#include <QtTest/QSignalSpy>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Collects what a key leads to, as text: "open", "walk 2", "choose 2".
class LKChoiceKeysTest : public testing::Test
{
protected:
    LKChoiceKeysTest()
    {
        offer({u"Kitchen"_s, {}, u"Bedroom"_s, u"Pool"_s}); // the second can't be chosen
        QObject::connect(&keys, &LKChoiceKeys::openDue, [this] { done.push_back(u"open"_s); });
        QObject::connect(&keys, &LKChoiceKeys::walked, [this](int row) { done.push_back(u"walk %1"_s.arg(row)); });
        QObject::connect(&keys, &LKChoiceKeys::chosen, [this](int row) { done.push_back(u"choose %1"_s.arg(row)); });
    }

    void offer(const QVariantList &labels) { keys.setProperty("labels", labels); }
    void chooseOnlyOpen() { keys.setProperty("choosesClosed", false); }
    void wrap() { keys.setProperty("wraps", true); }

    QStringList closed(int key, int row, const QString &text = {}, int modifiers = 0)
    {
        done.clear();
        isUsed = keys.take(key, modifiers, text, row, false);
        return done;
    }

    QStringList open(int key, int row, const QString &text = {})
    {
        done.clear();
        isUsed = keys.take(key, 0, text, row, true);
        return done;
    }

    QStringList across(int key, int row, bool isMirrored = false)
    {
        done.clear();
        isUsed = keys.takeAcross(key, row, isMirrored);
        return done;
    }

    LKChoiceKeys keys;
    QStringList done;
    bool isUsed = false;
};

} // namespace

TEST_F(LKChoiceKeysTest, ClosedAKeyChoosesAtOncePastWhatCannotBeChosen)
{
    EXPECT_THAT(closed(Qt::Key_Down, 0), ElementsAre(u"choose 2"_s));
    EXPECT_THAT(closed(Qt::Key_Up, 2), ElementsAre(u"choose 0"_s));
    EXPECT_THAT(closed(Qt::Key_Home, 3), ElementsAre(u"choose 0"_s));
    EXPECT_THAT(closed(Qt::Key_End, 0), ElementsAre(u"choose 3"_s));
    EXPECT_THAT(closed(Qt::Key_P, 0, u"p"_s), ElementsAre(u"choose 3"_s));
}

TEST_F(LKChoiceKeysTest, AtEitherEndAKeyIsUsedAndLeadsNowhere)
{
    for (const auto &[key, row] : {std::pair{Qt::Key_Up, 0}, {Qt::Key_Down, 3}, {Qt::Key_Home, 0}, {Qt::Key_End, 3}}) {
        EXPECT_THAT(closed(key, row), IsEmpty());
        EXPECT_TRUE(isUsed);
    }
}

TEST_F(LKChoiceKeysTest, WithoutAChoiceDownGoesToTheFirstRowAndUpNowhere)
{
    EXPECT_THAT(closed(Qt::Key_Down, -1), ElementsAre(u"choose 0"_s));
    EXPECT_THAT(closed(Qt::Key_Up, -1), IsEmpty());
    EXPECT_TRUE(isUsed);
}

TEST_F(LKChoiceKeysTest, OpenAKeyWalks)
{
    EXPECT_THAT(open(Qt::Key_Down, 0), ElementsAre(u"walk 2"_s));
    EXPECT_THAT(open(Qt::Key_Up, 3), ElementsAre(u"walk 2"_s));
    EXPECT_THAT(open(Qt::Key_Home, 3), ElementsAre(u"walk 0"_s));
    EXPECT_THAT(open(Qt::Key_End, 0), ElementsAre(u"walk 3"_s));
    EXPECT_THAT(open(Qt::Key_B, 0, u"b"_s), ElementsAre(u"walk 2"_s));
}

TEST_F(LKChoiceKeysTest, AListThatWrapsIsWalkedRoundItsEnds)
{
    offer({{}, u"Kitchen"_s, {}, u"Bedroom"_s, u"Pool"_s, {}});
    wrap();
    EXPECT_THAT(open(Qt::Key_Down, 1), ElementsAre(u"walk 3"_s));
    EXPECT_THAT(open(Qt::Key_Down, 4), ElementsAre(u"walk 1"_s));
    EXPECT_THAT(open(Qt::Key_Up, 1), ElementsAre(u"walk 4"_s));
    EXPECT_THAT(open(Qt::Key_Down, -1), ElementsAre(u"walk 1"_s));
    EXPECT_THAT(open(Qt::Key_Up, -1), ElementsAre(u"walk 4"_s));
    EXPECT_THAT(open(Qt::Key_Home, 3), ElementsAre(u"walk 1"_s));
    EXPECT_THAT(open(Qt::Key_End, 3), ElementsAre(u"walk 4"_s));
    EXPECT_THAT(open(Qt::Key_B, 4, u"b"_s), ElementsAre(u"walk 3"_s));
    offer({{}, {}});
    EXPECT_THAT(open(Qt::Key_Down, -1), IsEmpty());
    EXPECT_THAT(open(Qt::Key_Up, -1), IsEmpty());
}

TEST_F(LKChoiceKeysTest, ChoicesBesideEachOtherAreWalkedByLeftAndRightHomeAndEnd)
{
    EXPECT_THAT(across(Qt::Key_Right, 0), ElementsAre(u"walk 2"_s));
    EXPECT_THAT(across(Qt::Key_Left, 2), ElementsAre(u"walk 0"_s));
    EXPECT_THAT(across(Qt::Key_Right, 2), ElementsAre(u"walk 3"_s));
    EXPECT_THAT(across(Qt::Key_Home, 3), ElementsAre(u"walk 0"_s));
    EXPECT_TRUE(isUsed);
    EXPECT_THAT(across(Qt::Key_End, 0), ElementsAre(u"walk 3"_s));
    EXPECT_TRUE(isUsed);
    EXPECT_THAT(across(Qt::Key_Home, 0), ElementsAre(u"walk 0"_s)) << "it has focus, but may not be chosen yet";
    EXPECT_THAT(across(Qt::Key_Right, 3), IsEmpty());
    EXPECT_TRUE(isUsed);
    EXPECT_THAT(across(Qt::Key_Left, 0), IsEmpty());
    EXPECT_TRUE(isUsed);
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_P, Qt::Key_Space}) {
        EXPECT_THAT(across(key, 0), IsEmpty()) << key;
        EXPECT_FALSE(isUsed) << key;
    }
}

TEST_F(LKChoiceKeysTest, InAMirroredLayoutLeftAndRightChangePlaces)
{
    EXPECT_THAT(across(Qt::Key_Left, 0, true), ElementsAre(u"walk 2"_s));
    EXPECT_THAT(across(Qt::Key_Left, 2, true), ElementsAre(u"walk 3"_s));
    EXPECT_THAT(across(Qt::Key_Right, 2, true), ElementsAre(u"walk 0"_s));
    EXPECT_THAT(across(Qt::Key_Home, 3, true), ElementsAre(u"walk 0"_s));
    EXPECT_THAT(across(Qt::Key_End, 0, true), ElementsAre(u"walk 3"_s));
}

TEST_F(LKChoiceKeysTest, TheNearestRowIsTheNextOneThatCanBeChosen)
{
    EXPECT_EQ(keys.next(0, 1), 2);
    EXPECT_EQ(keys.next(2, -1), 0);
    EXPECT_EQ(keys.next(4, -1), 3);
    EXPECT_EQ(keys.next(3, 1), -1);
    EXPECT_EQ(keys.next(0, -1), -1);
}

TEST_F(LKChoiceKeysTest, TheFirstRowFollowsTheLabels)
{
    EXPECT_EQ(keys.property("first").toInt(), 0);
    const QSignalSpy changed(&keys, &LKChoiceKeys::labelsChanged);
    offer({{}, u"Kitchen"_s});
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(keys.property("first").toInt(), 1);
    offer({{}});
    EXPECT_EQ(keys.property("first").toInt(), -1);
}

TEST_F(LKChoiceKeysTest, AltAndDownOpensTheList)
{
    EXPECT_THAT(closed(Qt::Key_Down, 0, {}, Qt::AltModifier), ElementsAre(u"open"_s));
    EXPECT_TRUE(isUsed);
}

TEST_F(LKChoiceKeysTest, WhereNothingMayBeChosenClosedAKeyOpensTheListFirst)
{
    chooseOnlyOpen();
    EXPECT_THAT(closed(Qt::Key_Down, 0), ElementsAre(u"open"_s));
    EXPECT_THAT(closed(Qt::Key_Up, 0), ElementsAre(u"open"_s));
    EXPECT_THAT(closed(Qt::Key_Home, 2), ElementsAre(u"open"_s, u"walk 0"_s));
    EXPECT_THAT(closed(Qt::Key_End, 0), ElementsAre(u"open"_s, u"walk 3"_s));
    EXPECT_THAT(closed(Qt::Key_P, 0, u"p"_s), ElementsAre(u"open"_s, u"walk 3"_s));
    EXPECT_THAT(closed(Qt::Key_X, 0, u"x"_s), IsEmpty()); // nothing begins with it
    EXPECT_THAT(open(Qt::Key_Down, 0), ElementsAre(u"walk 2"_s));
}

TEST_F(LKChoiceKeysTest, OtherKeysAreLeftToTheControl)
{
    for (const auto &[key, text] : {std::pair{Qt::Key_Space, u" "_s}, {Qt::Key_Return, u"\r"_s}, {Qt::Key_Tab, {}}}) {
        EXPECT_THAT(closed(key, 0, text), IsEmpty());
        EXPECT_FALSE(isUsed);
    }
    EXPECT_THAT(closed(Qt::Key_P, 0, u"p"_s, Qt::ControlModifier), IsEmpty());
    EXPECT_FALSE(isUsed);
}

TEST_F(LKChoiceKeysTest, StandsNoRows)
{
    offer({});
    for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End}) {
        EXPECT_THAT(closed(key, -1), IsEmpty());
        EXPECT_TRUE(isUsed);
    }
}
