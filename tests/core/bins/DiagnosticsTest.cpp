#include "core/bins/Diagnostics.h"

#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

const std::string header =
    "clip,primary_bin,extra_bins,confidence,human_fraction,vertical,identifier,identifier_confidence\n";

ClipPtr clipOf(const char *path)
{
    auto clip = std::make_shared<MediaClip>(FileUrl(path));
    clip->primaryBin = u"Kitchen"_s;
    clip->confidence = 0.5;
    clip->humanFraction = 0.0125;
    return clip;
}

std::string csvOf(const ClipPtr &clip)
{
    const std::string text = clipDiagnostics(std::vector{clip}).toStdString();
    EXPECT_EQ(text.substr(0, header.size()), header);
    return text.substr(header.size());
}

} // namespace

TEST(Diagnostics, AClipWithThreeIdentifiersHasThreeLinesWithTheSameFirstSixColumns)
{
    const ClipPtr clip = clipOf("/shoot/a 1.tar.MOV");
    clip->rawIdentifiers = {{u"kitchen"_s, 0.9}, {u"sink"_s, 0.0004}, {u"oven"_s, 1.0}};
    EXPECT_EQ(csvOf(clip), "a 1.tar,Kitchen,\"\",0.500,0.013,false,kitchen,0.900\n"
                           "a 1.tar,Kitchen,\"\",0.500,0.013,false,sink,0.000\n"
                           "a 1.tar,Kitchen,\"\",0.500,0.013,false,oven,1.000\n");
}

TEST(Diagnostics, AClipThatWasNeverClassifiedHasOneLineEndingInTwoCommas)
{
    EXPECT_EQ(csvOf(clipOf("/shoot/a.mov")), "a,Kitchen,\"\",0.500,0.013,false,,\n");
}

TEST(Diagnostics, WhatLiesHalfwayIsRoundedToTheEvenNeighbour)
{
    const ClipPtr clip = clipOf("/shoot/a.mov");
    clip->confidence = 0.0625;
    clip->humanFraction = 0.5625;
    EXPECT_EQ(csvOf(clip), "a,Kitchen,\"\",0.062,0.562,false,,\n");
}

TEST(Diagnostics, ExtraBinsStandInOneQuotedColumnApartBySemicolons)
{
    const ClipPtr clip = clipOf("/shoot/a.mov");
    clip->extraBins = {u"Dining Room"_s, u"Kitchen"_s};
    EXPECT_EQ(csvOf(clip), "a,Kitchen,\"Dining Room; Kitchen\",0.500,0.013,false,,\n");
}

TEST(Diagnostics, OnlyAPictureTallerThanWideIsVertical)
{
    const ClipPtr clip = clipOf("/shoot/a.mov");
    const auto vertical = [&clip](QSizeF size) {
        clip->displaySize = size;
        return QString::fromStdString(csvOf(clip)).section(u',', 5, 5);
    };
    EXPECT_EQ(vertical({1920, 1080}), u"false"_s);
    EXPECT_EQ(vertical({1080, 1080}), u"false"_s);
    EXPECT_EQ(vertical({1080, 1920}), u"true"_s);
}

TEST(Diagnostics, NothingButTheExtraBinsIsQuotedOrEscaped)
{
    EXPECT_EQ(csvOf(clipOf("/shoot/a, \"b\" %1.mov")), "a, \"b\" %1,Kitchen,\"\",0.500,0.013,false,,\n");
}

TEST(Diagnostics, ClipsStandInTheirOrderAndNoClipsLeaveTheHeader)
{
    EXPECT_EQ(clipDiagnostics({}).toStdString(), header);
    const std::vector<ClipPtr> clips{clipOf("/b.mov"), clipOf("/a.mov")};
    EXPECT_EQ(clipDiagnostics(clips).toStdString(), header + "b,Kitchen,\"\",0.500,0.013,false,,\n"
                                                             "a,Kitchen,\"\",0.500,0.013,false,,\n");
}

TEST(Vocabulary, IdentifiersAreSortedOneALineWithoutALineFeedAtTheEnd)
{
    EXPECT_EQ(vocabularyText({u"sink"_s, u"bed"_s, u"oven"_s}), u"bed\noven\nsink"_s);
    EXPECT_EQ(vocabularyText({}), QString());
}

TEST_F(SortEngineTest, DiagnosticsOfASortAreWrittenInOneStepAndAFailureLeavesNothing)
{
    makeClips({"kitchen 1", "dark 2"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const auto file = folder.write("binnacle-diagnostics.csv", "old and much longer than what replaces it");
    ASSERT_TRUE(engine.exportDiagnostics(FileUrl(file)));
    EXPECT_EQ(bytesOf(file), header + "kitchen 1,Kitchen,\"\",1.000,0.000,false,Kitchen,1.000\n"
                                      "dark 2,Unsorted,\"\",0.000,0.000,false,,\n");
    EXPECT_EQ(engine.exportDiagnostics(FileUrl(folder / "gone/x.csv")).error(), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(std::filesystem::exists(folder / "gone"));
}
