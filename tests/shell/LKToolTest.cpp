#include "shell/LKTool.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

TEST(LKTool, AllAreTheseInThisOrderAndOneIsReady)
{
    std::vector<std::pair<QString, bool>> tools;
    for (const LKTool &tool : LKTool::all()) {
        tools.emplace_back(tool.id, tool.ready);
    }
    EXPECT_THAT(tools, ElementsAre(std::pair(u"binnacle"_s, true), std::pair(u"huelock"_s, false),
                                   std::pair(u"earmark"_s, false), std::pair(u"parcelry"_s, false)));
}

TEST(LKTool, AnUnknownIdIsTheFirstOne)
{
    EXPECT_EQ(LKTool::current(u"earmark"_s).name, u"Earmark"_s);
    EXPECT_EQ(LKTool::current(u"nothing"_s), LKTool::all().front());
    EXPECT_EQ(LKTool::current({}), LKTool::all().front());
}

TEST(LKTool, OnlyTheOnesInDevelopmentSayWhatIsComing)
{
    for (const LKTool &tool : LKTool::all()) {
        EXPECT_EQ(tool.blurb.isEmpty(), tool.ready);
        EXPECT_EQ(tool.bullets.size(), tool.ready ? 0 : 3);
    }
}

TEST(LKTool, TheFirstOneReads)
{
    const LKTool &tool = LKTool::all().front();
    EXPECT_EQ(tool.name, u"Binnacle"_s);
    EXPECT_EQ(tool.tagline, u"Sorts a shoot into room and shot-type bins, then builds the event."_s);
    EXPECT_EQ(tool.meta, u"19 bins · builds the Final Cut event"_s);
    EXPECT_EQ(tool.glyph, u"🤖"_s);
    EXPECT_EQ(tool.gradientFrom, QColor(u"#3A3D5C"_s));
    EXPECT_EQ(tool.gradientTo, QColor(u"#14141F"_s));
}
