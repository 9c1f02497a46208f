#include "shell/launcher/LKTool.h"

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

TEST(LKTool, AllReadLikeThis)
{
    const LKTool binnacle{
        .id = u"binnacle"_s,
        .name = u"Binnacle"_s,
        .ready = true,
        .tagline = u"Sorts a shoot into room and shot-type bins, then builds the event."_s,
        .meta = u"19 bins · builds the Final Cut event"_s,
        .glyph = u"🤖"_s,
        .gradientFrom = QColor(u"#3A3D5C"_s),
        .gradientTo = QColor(u"#14141F"_s),
    };
    const LKTool huelock{
        .id = u"huelock"_s,
        .name = u"Huelock"_s,
        .tagline = u"Matches a whole shoot to one reference frame before the edit."_s,
        .meta = u"Per-clip CDL, applied on import"_s,
        .glyph = u"🖌️"_s,
        .gradientFrom = QColor(u"#4A3A34"_s),
        .gradientTo = QColor(u"#191210"_s),
        .blurb = u"Pick one frame you like and Huelock brings the rest of the shoot to it — white balance, exposure "
                 u"and contrast — before anything reaches Final Cut."_s,
        .bullets = {u"Reads the same clips Binnacle already scanned, so nothing is decoded twice."_s,
                    u"Writes a per-clip CDL alongside the event; Final Cut applies it on import."_s,
                    u"Leaves your originals untouched — corrections travel as data, not renders."_s},
    };
    const LKTool earmark{
        .id = u"earmark"_s,
        .name = u"Earmark"_s,
        .tagline = u"Picks usable takes and flags the ones with unusable audio."_s,
        .meta = u"Waveform + room-tone pass"_s,
        .glyph = u"🔊"_s,
        .gradientFrom = QColor(u"#2F3F45"_s),
        .gradientTo = QColor(u"#101619"_s),
        .blurb = u"Earmark listens through a shoot and tells you which takes are usable before you cut."_s,
        .bullets = {u"Flags wind, clipping and handling noise per clip."_s,
                    u"Marks the quietest stretch of each room as room tone."_s,
                    u"Ranks takes so the good one is the one you reach for first."_s},
    };
    const LKTool parcelry{
        .id = u"parcelry"_s,
        .name = u"Parcelry"_s,
        .tagline = u"Packages a finished edit for the client or the next editor."_s,
        .meta = u"Presets per client"_s,
        .glyph = u"🤝"_s,
        .gradientFrom = QColor(u"#45403A"_s),
        .gradientTo = QColor(u"#161311"_s),
        .blurb = u"Parcelry packages a finished edit so the next person can open it without a phone call."_s,
        .bullets = {u"Collects the event, the media it references and your notes."_s,
                    u"Relinks to a client's folder structure instead of yours."_s,
                    u"Writes a plain-text manifest of what's inside."_s},
    };
    EXPECT_TRUE(LKTool::all() == (std::vector{binnacle, huelock, earmark, parcelry}));
}
