#include "screens/engine/Wording.h"

#include <gtest/gtest.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(Wording, FillsTheMarkersInAndLeavesThoseInANameAlone)
{
    EXPECT_EQ(Wording::of(u"%1 · %2 clips · %3 bins"_s, {u"House 50%1 off %2 %3"_s, 4, 2}),
              u"House 50%1 off %2 %3 · 4 clips · 2 bins"_s);
    EXPECT_EQ(Wording::of(u"%2, then %1"_s, {u"a"_s, u"b"_s}), u"b, then a"_s);
}

TEST(Wording, LeavesAMarkerWithoutAPartAndALonePercentSignAsTheyAre)
{
    EXPECT_EQ(Wording::of(u"%1 of %2, 100%, %0, %"_s, {u"a"_s}), u"a of %2, 100%, %0, %"_s);
}

TEST(Wording, IsolatesWhatRunsFromRightToLeftAndNothingElse)
{
    const QString name = u"בית 14"_s;
    EXPECT_EQ(Wording::isolated(name), u"\u2068"_s + name + u"\u2069"_s);
    EXPECT_EQ(Wording::isolated(u"بيت"_s), u"\u2068بيت\u2069"_s);
    EXPECT_EQ(Wording::isolated(u"A \u202e B"_s), u"\u2068A \u202e B\u2069"_s); // turns what follows it
    for (const QString &plain : {u"Oak Avenue 221"_s, u"家 🏠"_s, u"Größe & <b>"_s, QString()}) {
        EXPECT_EQ(Wording::isolated(plain), plain);
    }
    EXPECT_EQ(Wording::of(u"%1 · %2 clips"_s, {name, 24}), u"\u2068"_s + name + u"\u2069 · 24 clips"_s);
}

TEST(Wording, ASentenceThatBeginsWithANameRunsFromLeftToRight)
{
    const QString sentence = u"בית.fcpxml · 2 bins"_s;
    EXPECT_TRUE(sentence.isRightToLeft());
    EXPECT_FALSE(Wording::leftToRight(sentence).isRightToLeft());
    EXPECT_FALSE(Wording::of(u"%1 · %2 clips"_s, {u"בית"_s, 2}).isRightToLeft());
    EXPECT_EQ(Wording::leftToRight(u"Oak.fcpxml"_s), u"Oak.fcpxml"_s);
}
