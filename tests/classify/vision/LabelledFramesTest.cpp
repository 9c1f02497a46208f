#include "bench/LabelledFrames.h"

#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <QtCore/QJsonDocument>
#include <QtGui/QImage>

#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::bench;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

namespace {

const ListColumns Photos{.name = 1, .bin = 0, .alternative = 2, .frames = {1}};
const ListColumns Clips{.name = 0, .bin = 1, .alternative = 2, .frames = {3, 4, 5, 6}};

std::vector<std::string> linesOf(const std::filesystem::path &file)
{
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// A list of one black frame that belongs in the kitchen.
class LabelledFramesTest : public testing::Test
{
protected:
    LabelledFramesTest()
    {
        QImage frame(448, 252, QImage::Format_RGB32);
        frame.fill(Qt::black);
        frame.save(QString::fromStdString((folder / "black.png").string()));
    }

    std::filesystem::path list(const std::string &text) const { return folder.write("list.tsv", text); }

    // Returns the program's output, parsed.
    static QJsonObject printed(const std::vector<std::string> &arguments, const ListColumns &columns, const char *key)
    {
        testing::internal::CaptureStdout();
        EXPECT_EQ(reportOnList(arguments, "program", columns, key), 0);
        const auto text = testing::internal::GetCapturedStdout();
        return QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    }

    const test::TempFolder folder;
};

} // namespace

TEST_F(LabelledFramesTest, TheThirdColumnIsASecondBin)
{
    const auto items = readLabelled(list("Pool\tblack.png\tExterior Back\nGarage\tblack.png\n"), Photos);
    ASSERT_THAT(items, SizeIs(2));
    EXPECT_EQ(items[0].bin, u"Pool"_s);
    EXPECT_EQ(items[0].alternative, u"Exterior Back"_s);
    EXPECT_EQ(items[0].name, "black.png");
    EXPECT_THAT(items[0].frames, ElementsAre(folder / "black.png"));
    EXPECT_THAT(items[1].alternative.toStdString(), IsEmpty());
}

TEST_F(LabelledFramesTest, AHeaderMayPutTheSecondBinElsewhere)
{
    const auto elsewhere = readLabelled(list("bin\tpath\tsource\tor\nPool\tblack.png\tsites\tGarage\n"), Photos);
    ASSERT_THAT(elsewhere, SizeIs(1));
    EXPECT_EQ(elsewhere[0].alternative, u"Garage"_s);
    const auto without = readLabelled(list("bin\tpath\tsource\nPool\tblack.png\tsites\n"), Photos);
    ASSERT_THAT(without, SizeIs(1));
    EXPECT_THAT(without[0].alternative.toStdString(), IsEmpty());
}

TEST_F(LabelledFramesTest, AClipHasFourFrames)
{
    const auto items = readLabelled(
        list("name\tbin\tor\tframe1\tframe2\tframe3\tframe4\nv1\tUnsorted\t\ta.png\tb.png\tc.png\td.png\n"), Clips);
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].name, "v1");
    EXPECT_EQ(items[0].bin, u"Unsorted"_s);
    EXPECT_THAT(items[0].frames, ElementsAre(folder / "a.png", folder / "b.png", folder / "c.png", folder / "d.png"));
}

TEST_F(LabelledFramesTest, TheReportHasItsKeysAndALineForEachPhoto)
{
    const auto report =
        printed({list("Kitchen\tblack.png\t\n").string(), "--each", (folder / "each.tsv").string()}, Photos, "photos");
    EXPECT_EQ(report[u"photos"_s].toDouble(), 1.0);
    for (const auto &key :
         {u"accuracy"_s, u"filedPrecision"_s, u"reviewShare"_s, u"perBin"_s, u"commonBins"_s, u"meanRecall"_s,
          u"strict"_s, u"noHouse"_s, u"confusion"_s, u"calibrationError"_s, u"framesPerSecond"_s, u"counted"_s}) {
        EXPECT_TRUE(report.contains(key)) << key.toStdString();
    }
    EXPECT_EQ(report[u"reviewShare"_s].toDouble(), 1.0);
    EXPECT_THAT(linesOf(folder / "each.tsv"),
                ElementsAre(MatchesRegex("black.png\tKitchen\t[^\t]*\t[^\t]*\t[^\t]*\t1")));
}

TEST_F(LabelledFramesTest, AClipOfFramesThatCantBeReadGoesToReview)
{
    const auto report = printed({list("v1\tUnsorted\t\tno.png\tno.png\tno.png\tno.png\n").string()}, Clips, "clips");
    EXPECT_EQ(report[u"clips"_s].toDouble(), 1.0);
    EXPECT_EQ(report[u"noHouse"_s].toObject()[u"filed"_s].toDouble(), 0.0);
}

TEST_F(LabelledFramesTest, WithoutAListTheProgramTellsHowItIsUsed)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(reportOnList({}, "program", Photos, "photos"), 2);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("usage: program TSV"));
}
