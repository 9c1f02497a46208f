#include "design/LKTypeAhead.h"

#include <gmock/gmock.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

namespace {

const QVariantList rooms{u"Kitchen"_s, u"Bathroom"_s, u"Bedroom"_s, u"Pool"_s};

} // namespace

TEST(LKTypeAhead, TakesWhatIsReadAsTextAndNoSpaceAndNoShortcut)
{
    EXPECT_TRUE(LKTypeAhead::takes(u"b"_s, Qt::NoModifier));
    EXPECT_TRUE(LKTypeAhead::takes(u"B"_s, Qt::ShiftModifier));
    EXPECT_TRUE(LKTypeAhead::takes(u"ß"_s, Qt::NoModifier));
    EXPECT_FALSE(LKTypeAhead::takes(QString(), Qt::NoModifier)); // an arrow
    EXPECT_FALSE(LKTypeAhead::takes(u" "_s, Qt::NoModifier));
    EXPECT_FALSE(LKTypeAhead::takes(u"\r"_s, Qt::NoModifier));
    EXPECT_FALSE(LKTypeAhead::takes(u"\u007f"_s, Qt::NoModifier));
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        EXPECT_FALSE(LKTypeAhead::takes(u"b"_s, modifier));
    }
}

TEST(LKTypeAhead, LettersInARowFindWhatBeginsWithThemAll)
{
    LKTypeAhead typed;
    EXPECT_EQ(typed.find(rooms, 0, u"b"_s), 1);
    EXPECT_EQ(typed.find(rooms, 1, u"E"_s), 2);
    EXPECT_EQ(typed.find(rooms, 2, u"d"_s), 2) << "still the same row";
    EXPECT_EQ(typed.find(rooms, 2, u"x"_s), -1);
}

TEST(LKTypeAhead, OneLetterAgainAndAgainGoesRoundWhatBeginsWithIt)
{
    LKTypeAhead typed;
    EXPECT_EQ(typed.find(rooms, -1, u"b"_s), 1);
    EXPECT_EQ(typed.find(rooms, 1, u"b"_s), 2);
    EXPECT_EQ(typed.find(rooms, 2, u"b"_s), 1);
}

TEST(LKTypeAhead, SkipsRowsThatCannotBeChosenAndStandsAnEmptyList)
{
    LKTypeAhead typed;
    EXPECT_EQ(typed.find({QVariant::fromValue(nullptr), u"Bedroom"_s}, -1, u"b"_s), 1);
    EXPECT_EQ(LKTypeAhead().find({QVariant::fromValue(nullptr)}, -1, u"k"_s), -1);
    EXPECT_EQ(LKTypeAhead().find({}, -1, u"k"_s), -1);
    EXPECT_EQ(LKTypeAhead().find(rooms, 0, QString()), -1);
}

TEST(LKTypeAhead, ASecondWithoutALetterBeginsAnew)
{
    LKTypeAhead typed;
    auto *pause = typed.findChild<QTimer *>();
    ASSERT_NE(pause, nullptr);
    EXPECT_EQ(pause->interval(), 1000);
    EXPECT_TRUE(pause->isSingleShot());
    EXPECT_EQ(typed.find(rooms, -1, u"p"_s), 3);
    EXPECT_TRUE(pause->isActive());
    QMetaObject::invokeMethod(pause, "timeout"); // a private signal
    EXPECT_EQ(typed.find(rooms, 3, u"k"_s), 0);
}
