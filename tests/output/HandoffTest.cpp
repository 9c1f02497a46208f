#include <gmock/gmock.h>

#include "core/bins/RoomLabel.h"
#include "output/FCPXMLWriter.h"
#include "output/Handoff.h"
#include "output/KeywordTable.h"
#include "output/MediaPaths.h"
#include "output/StringOut.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

ClipPtr handoffClip(const std::string &path, const QString &bin, double seconds = 2.0)
{
    auto clip = std::make_shared<MediaClip>(FileUrl(path));
    clip->duration = seconds;
    clip->displaySize = {1920, 1080};
    clip->frameDurationValue = 1;
    clip->frameDurationScale = 25;
    clip->primaryBin = bin;
    return clip;
}

ClipPtr clipAtRate(const std::string &path, std::int64_t value, std::int32_t scale, double seconds = 2.0)
{
    const ClipPtr clip = handoffClip(path, u"Kitchen"_s, seconds);
    clip->frameDurationValue = value;
    clip->frameDurationScale = scale;
    return clip;
}

std::vector<std::string> binsInTour(const std::vector<QString> &bins)
{
    std::vector<ClipPtr> clips;
    for (const QString &bin : bins) {
        clips.push_back(handoffClip("/a.mov", bin));
    }
    std::vector<std::string> order;
    for (const ClipPtr &clip : inTourOrder(clips)) {
        order.push_back(clip->primaryBin.toStdString());
    }
    return order;
}

MediaPaths onMacWithCard()
{
    return MediaPaths::onMac({{"/media/ann/CARD", "CARD"}, {"/media/ann/CARD/inner", "Inner"}});
}

} // namespace

TEST(TourOrder, GoesFromTheStreetThroughTheRoomsToTheGardenAndUp)
{
    std::vector<QString> bins;
    for (const RoomLabel &label : RoomLabel::all()) {
        bins.push_back(label.name);
    }
    bins.push_back(unsortedBin());
    EXPECT_THAT(binsInTour(bins),
                ElementsAre("Exterior Front", "Entry / Courtyard", "Living Room", "Dining Room", "Kitchen", "Bedroom",
                            "Bathroom", "Office", "Laundry Room", "Garage", "Hallway / Stairs", "Closet",
                            "Exterior Detail", "Interior Detail", "Amenities / Other", "Agent / Talent", "Unsorted",
                            "Exterior Back", "Pool", "Aerial / Drone"));
}

TEST(TourOrder, NumberedRoomsFollowTheirNumbersAndOtherNamesComeAfterTheRooms)
{
    EXPECT_THAT(binsInTour({u"Pool"_s, u"Studio 54"_s, u"Bedroom 10"_s, u"Bathroom"_s, u"Bedroom 2"_s, u"Bedroom 1"_s,
                            u"Kitchen"_s, u""_s}),
                ElementsAre("Kitchen", "Bedroom 1", "Bedroom 2", "Bedroom 10", "Bathroom", "Studio 54", "", "Pool"));
}

TEST(TourOrder, ClipsOfABinStandInShootingOrder)
{
    const std::vector clips{handoffClip("/late.mov", u"Pool"_s), handoffClip("/early.mov", u"Pool"_s)};
    clips[0]->creationDate = distantPast + 1h;
    EXPECT_EQ(inTourOrder(clips), (std::vector{clips[1], clips[0]}));
}

TEST(StringOut, EachClipBeginsWhereTheLastOneEndsAndTheFirstOfABinIsMarked)
{
    const StringOut stringOut =
        StringOut::of(std::vector{handoffClip("/1.mov", u"Kitchen"_s, 2.0), handoffClip("/2.mov", u"Kitchen"_s, 1.0),
                                  handoffClip("/3.mov", u"Pool"_s, 0.04)});
    std::vector<std::tuple<std::string, std::int64_t, std::int64_t, bool>> entries;
    for (const TimelineClip &entry : stringOut.clips) {
        entries.emplace_back(entry.clip->url.path(), entry.start, entry.length, entry.opensBin);
    }
    EXPECT_THAT(entries, ElementsAre(std::tuple("/1.mov", 0, 50, true), std::tuple("/2.mov", 50, 25, false),
                                     std::tuple("/3.mov", 75, 1, true)));
    EXPECT_EQ(stringOut.length, 76);
}

TEST(StringOut, AClipWithoutAPictureOrALengthIsLeftOut)
{
    const ClipPtr blind = handoffClip("/blind.mov", u"Pool"_s);
    blind->displaySize = {0, 0};
    const ClipPtr huge = handoffClip("/huge.mov", u"Pool"_s);
    huge->displaySize = {std::numeric_limits<double>::infinity(), 1080};
    const ClipPtr endless = handoffClip("/endless.mov", u"Pool"_s, std::numeric_limits<double>::quiet_NaN());
    const StringOut stringOut =
        StringOut::of(std::vector{blind, huge, endless, handoffClip("/empty.mov", u"Pool"_s, 0.0)});
    EXPECT_TRUE(stringOut.clips.empty());
    EXPECT_EQ(stringOut.length, 0);
}

TEST(StringOut, AClipOfAnotherRateFillsWholeFramesOfTheTimelineAndNoMoreThanItHas)
{
    const std::vector clips{clipAtRate("/1.mov", 1001, 30'000), clipAtRate("/2.mov", 1001, 30'000),
                            clipAtRate("/3.mov", 1, 25, 1.0)};
    const StringOut stringOut = StringOut::of(clips);
    EXPECT_EQ(stringOut.format.rate, (FrameRate{.counted = 30, .isOver1001 = true}));
    EXPECT_EQ(stringOut.clips.back().length, 29) << "25 frames are 29.97 of the timeline's";
}

TEST(StringOut, ALengthThatNoFileCanHaveStaysANumber)
{
    const StringOut stringOut = StringOut::of(std::vector{handoffClip("/1.mov", u"Pool"_s, 1e300)});
    EXPECT_EQ(stringOut.length, 7LL * 86'400 * 1000);
}

TEST(MostCommonFormat, IsThatOfTheMostClipsAndTheEarliestOfSeveral)
{
    const ClipPtr upright = handoffClip("/up.mov", u"Pool"_s);
    upright->displaySize = {1080, 1920};
    const std::vector clips{upright, clipAtRate("/1.mov", 512, 15'360), clipAtRate("/2.mov", 1, 30)};
    EXPECT_EQ(mostCommonFormat(clips), (TimelineFormat{1920, 1080, {.counted = 30, .isOver1001 = false}}));
    EXPECT_EQ(mostCommonFormat(std::span(clips).first(2)), (TimelineFormat{1080, 1920, {.counted = 25}}));
}

TEST(MostCommonFormat, SidesAreEvenAndClipsWithoutASizeDoNotCount)
{
    const ClipPtr odd = handoffClip("/odd.mov", u"Pool"_s);
    odd->displaySize = {1919, 1079};
    const std::vector clips{std::make_shared<MediaClip>(FileUrl("/a")), std::make_shared<MediaClip>(FileUrl("/b")),
                            odd};
    EXPECT_EQ(mostCommonFormat(clips), (TimelineFormat{1920, 1080, {.counted = 25}}));
    EXPECT_EQ(mostCommonFormat({}), TimelineFormat());
}

TEST(MostCommonFormat, AClipWithoutARateTakesTheDefault)
{
    const ClipPtr clip = clipAtRate("/a.mov", 0, 0);
    EXPECT_EQ(mostCommonFormat(std::vector{clip}).rate, TimelineFormat().rate);
}

TEST(EventWithTimecode, AssetClipAndKeywordsStartAtTheCamerasTime)
{
    const ClipPtr clip = clipAtRate("/Shoot/a.mov", 1001, 60'000);
    clip->timecode = Timecode::parsed(u"01:00:00;00"_s, 29.97);
    EXPECT_EQ(FCPXMLWriter::eventWithTimecode(std::vector{clip}, u"E"_s).toStdString(),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE fcpxml>
<fcpxml version="1.10">
  <resources>
    <format id="r1" frameDuration="1001/60000s" width="1920" height="1080"/>
    <asset id="r2" name="a" start="215999784/60000s" duration="120120/60000s" hasVideo="1" hasAudio="1" format="r1">
      <media-rep kind="original-media" src="file:///Shoot/a.mov"/>
    </asset>
  </resources>
  <library>
    <event name="E">
      <asset-clip ref="r2" name="a" start="215999784/60000s" duration="120120/60000s" format="r1" tcFormat="DF">
        <keyword start="215999784/60000s" duration="120120/60000s" value="Kitchen"/>
      </asset-clip>
    </event>
  </library>
</fcpxml>)");
}

TEST(EventWithTimecode, ClipsWithoutTimecodeGiveTheVeryEventThatIsTheDefault)
{
    const std::vector clips{handoffClip("/a.mov", u"Pool"_s), clipAtRate("/b.mov", 1001, 30'000)};
    EXPECT_EQ(FCPXMLWriter::eventWithTimecode(clips, u"E"_s), FCPXMLWriter::event(clips, u"E"_s));
}

TEST(EventWithTimecode, TheDefaultEventKnowsNoTimecode)
{
    const ClipPtr clip = handoffClip("/a.mov", u"Pool"_s);
    const QString without = FCPXMLWriter::event(std::vector{clip}, u"E"_s);
    clip->timecode = Timecode::parsed(u"10:00:00:00"_s, 25);
    EXPECT_EQ(FCPXMLWriter::event(std::vector{clip}, u"E"_s), without);
}

TEST(FcpxmlStringOut, TheProjectHoldsEveryClipOnceWithAMarkerAtEachBin)
{
    const std::vector clips{handoffClip("/pool.mov", u"Pool"_s), handoffClip("/kitchen.mov", u"Kitchen"_s),
                            handoffClip("/kitchen2.mov", u"Kitchen"_s, 1.0)};
    clips[1]->timecode = Timecode::parsed(u"00:00:10:00"_s, 25);
    const QString text = FCPXMLWriter::stringOut(clips, u"A & B"_s);
    EXPECT_EQ(text.mid(text.indexOf(u"      <project"_s)).toStdString(),
              R"(      <project name="A &amp; B">
        <sequence format="r5" duration="125/25s" tcStart="0s" tcFormat="NDF">
          <spine>
            <asset-clip ref="r3" offset="0s" name="kitchen" start="250/25s" duration="50/25s" format="r1" tcFormat="NDF">
              <marker start="250/25s" duration="1/25s" value="Kitchen"/>
            </asset-clip>
            <asset-clip ref="r4" offset="50/25s" name="kitchen2" start="0s" duration="25/25s" format="r1"/>
            <asset-clip ref="r2" offset="75/25s" name="pool" start="0s" duration="50/25s" format="r1">
              <marker start="0s" duration="1/25s" value="Pool"/>
            </asset-clip>
          </spine>
        </sequence>
      </project>
    </event>
  </library>
</fcpxml>)");
    EXPECT_TRUE(text.contains(
        uR"(<format id="r5" name="FFVideoFormat1080p25" frameDuration="1/25s" width="1920" height="1080"/>)"_s));
}

TEST(FcpxmlStringOut, TheTimelinesFormatHasTheEditorsNameWhereItHasOne)
{
    const auto hasFormat = [](QSizeF size, std::int64_t value, std::int32_t scale, const QString &name) {
        const ClipPtr clip = clipAtRate("/a.mov", value, scale);
        clip->displaySize = size;
        return FCPXMLWriter::stringOut(std::vector{clip}, u"E"_s).contains(u"name=\"FFVideoFormat%1\""_s.arg(name));
    };
    EXPECT_TRUE(hasFormat({3840, 2160}, 1, 24, u"3840x2160p24"_s));
    EXPECT_TRUE(hasFormat({3840, 2160}, 1001, 24'000, u"3840x2160p2398"_s));
    EXPECT_TRUE(hasFormat({1920, 1080}, 1001, 30'000, u"1080p2997"_s));
    EXPECT_TRUE(hasFormat({1920, 1080}, 1, 30, u"1080p30"_s));
    EXPECT_TRUE(hasFormat({1280, 720}, 1, 50, u"720p50"_s));
    EXPECT_TRUE(hasFormat({1280, 720}, 1001, 60'000, u"720p5994"_s));
    EXPECT_TRUE(hasFormat({1280, 720}, 1, 60, u"720p60"_s));
    EXPECT_FALSE(hasFormat({2160, 3840}, 1, 24, u""_s)) << "none of an upright timeline";
    EXPECT_FALSE(hasFormat({1920, 1200}, 1, 24, u""_s));
}

TEST(FcpxmlStringOut, TimesAreExactAtA1001Rate)
{
    const std::vector clips{clipAtRate("/1.mov", 1001, 30'000), clipAtRate("/2.mov", 1001, 30'000)};
    const QString text = FCPXMLWriter::stringOut(clips, u"E"_s);
    EXPECT_TRUE(text.contains(u" offset=\"60060/30000s\""_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u" duration=\"120120/30000s\""_s)) << text.toStdString();
}

TEST(FcpxmlStringOut, EveryRateThatTheEditorConformsHasItsName)
{
    struct Rate
    {
        std::int64_t value;
        std::int32_t scale;
        const char *name;
    };
    for (const Rate &rate : {Rate{1001, 24'000, "23.98"}, Rate{1, 24, "24"}, Rate{1, 25, "25"},
                             Rate{1001, 30'000, "29.97"}, Rate{1, 30, "30"}, Rate{1001, 48'000, "47.95"},
                             Rate{1, 48, "48"}, Rate{1, 50, "50"}, Rate{1001, 60'000, "59.94"}, Rate{1, 60, "60"},
                             Rate{1, 100, "100"}, Rate{1001, 120'000, "119.88"}, Rate{1, 120, "120"}}) {
        const std::int32_t timelines = rate.scale == 25 ? 30 : 25;
        const std::vector clips{clipAtRate("/1.mov", 1, timelines), clipAtRate("/2.mov", 1, timelines),
                                clipAtRate("/3.mov", rate.value, rate.scale)};
        EXPECT_EQ(
            FCPXMLWriter::stringOut(clips, u"E"_s).count(u"srcFrameRate=\"%1\""_s.arg(QLatin1StringView(rate.name))), 1)
            << rate.name;
    }
}

TEST(FcpxmlStringOut, AClipOfAnotherRatePlaysAtItsOwnSpeed)
{
    const std::vector clips{clipAtRate("/1.mov", 1001, 30'000), clipAtRate("/2.mov", 1001, 30'000),
                            clipAtRate("/3.mov", 1, 25)};
    EXPECT_EQ(FCPXMLWriter::stringOut(clips, u"E"_s).count(uR"(<conform-rate scaleEnabled="0" srcFrameRate="25"/>)"_s),
              1);
}

TEST(KeywordTable, NamesTheColumnsThatResolveReadsAndQuotesWhatNeedsIt)
{
    const ClipPtr first = clipAtRate("/Shoot, 1/a \"b\".mov", 1001, 24'000, 62.5);
    first->extraBins = {u"Dining Room"_s};
    first->confidence = 0.8125;
    const ClipPtr second = handoffClip("/Shoot/plain.mov", u"Pool"_s, 0.0);
    second->creationDate = distantPast + 1s;
    EXPECT_EQ(keywordTable(std::vector{second, first}).toStdString(),
              "File Name,Clip Directory,Duration TC,Keywords,Confidence\r\n"
              "\"a \"\"b\"\".mov\",\"/Shoot, 1\",00:01:02:11,\"Kitchen,Dining Room\",0.812\r\n"
              "plain.mov,/Shoot,00:00:00:01,Pool,0.000\r\n");
}

TEST(KeywordTable, AClipThatWasNeverReadHasItsLineAndALineBreakStaysInItsField)
{
    const ClipPtr clip = std::make_shared<MediaClip>(FileUrl("/a\nb.mov"));
    clip->frameDurationValue = 0;
    EXPECT_EQ(keywordTable(std::vector{clip}).section(u"\r\n"_s, 1, 1), u"\"a\nb.mov\",/,,,0.000"_s);
}

TEST(MediaPaths, AMacFindsAVolumesFilesUnderItsNameAndTheDeepestVolumeCounts)
{
    const MediaPaths mac = onMacWithCard();
    EXPECT_EQ(mac.of(FileUrl("/media/ann/CARD/DCIM/A 1.MOV")), FileUrl("/Volumes/CARD/DCIM/A 1.MOV"));
    EXPECT_EQ(mac.of(FileUrl("/media/ann/CARD/inner/a.mov")), FileUrl("/Volumes/Inner/a.mov"));
    EXPECT_EQ(mac.of(FileUrl("/media/ann/CARD 2/a.mov")), FileUrl("/media/ann/CARD 2/a.mov"));
    EXPECT_EQ(mac.of(FileUrl("/home/ann/a.mov")), FileUrl("/home/ann/a.mov"));
    EXPECT_EQ(MediaPaths().of(FileUrl("/media/ann/CARD/a.mov")), FileUrl("/media/ann/CARD/a.mov"));
}

TEST(MediaPaths, ASlashInAVolumesNameIsAColonInItsPath)
{
    EXPECT_EQ(MediaPaths::onMac({{"/media/x", "A/B"}}).of(FileUrl("/media/x/a.mov")), FileUrl("/Volumes/A:B/a.mov"));
}

TEST(MediaPaths, OfAClipItIsTheFootagesPlaceAfterAnImport)
{
    const ClipPtr clip = handoffClip("/home/ann/a.mov", u"Pool"_s);
    clip->destinationURL = FileUrl("/media/ann/CARD/Pool/a.mov");
    EXPECT_EQ(onMacWithCard().of(*clip), FileUrl("/Volumes/CARD/Pool/a.mov"));
}

TEST(NamedVolumes, AShareGoesByItsOwnNameAndTheRootIsNone)
{
    const auto table = parseMountTable("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                       "2 1 0:40 / /mnt/work rw - cifs //server/Footage rw\n"
                                       "3 1 0:41 / /mnt/nfs rw - nfs4 server:/export/Clips rw\n"
                                       "4 1 8:17 / /media/ann/CARD rw - exfat /dev/sdb1 rw\n");
    EXPECT_THAT(namedVolumes(table, "/nowhere", "/nowhere"),
                ElementsAre(NamedVolume{"/mnt/work", "Footage"}, NamedVolume{"/mnt/nfs", "Clips"},
                            NamedVolume{"/media/ann/CARD", "CARD"}));
}

TEST(MediaPaths, EveryFcpxmlAndTheTableHaveTheMacsPaths)
{
    const std::vector clips{handoffClip("/media/ann/CARD/a b.mov", u"Pool"_s)};
    for (const QString &text : {FCPXMLWriter::eventWithTimecode(clips, u"E"_s, onMacWithCard()),
                                FCPXMLWriter::stringOut(clips, u"E"_s, onMacWithCard())}) {
        EXPECT_TRUE(text.contains(u"src=\"file:///Volumes/CARD/a%20b.mov\""_s));
    }
    EXPECT_TRUE(keywordTable(clips, onMacWithCard()).contains(u"a b.mov,/Volumes/CARD,"_s));
}

TEST(Handoff, OnlyTheFormatsThatHoldTimecodesChangeWithOne)
{
    const ClipPtr clip = handoffClip("/1.mov", u"Kitchen"_s);
    for (const HandoffFormat format : allHandoffFormats) {
        clip->timecode.reset();
        const QByteArray without = handoffText(format, std::vector{clip}, u"House"_s);
        clip->timecode = Timecode{.frame = 900'000, .rate = {.counted = 25, .isOver1001 = false}, .isDropFrame = false};
        EXPECT_EQ(handoffText(format, std::vector{clip}, u"House"_s) != without, holdsTimecode(format))
            << handoffRawValue(format).toStdString();
    }
}
