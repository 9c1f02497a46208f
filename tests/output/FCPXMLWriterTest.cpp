#include <gmock/gmock.h>

#include "output/FCPXMLWriter.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

ClipPtr clipAt(const char *path, const QString &bin = {})
{
    auto clip = std::make_shared<MediaClip>(FileUrl(path));
    clip->duration = 12.3;
    clip->displaySize = {3840, 2160};
    clip->primaryBin = bin;
    return clip;
}

ClipPtr uprightClipAt(const char *path)
{
    ClipPtr clip = clipAt(path);
    clip->displaySize = {2160, 3840};
    return clip;
}

// The lines of a text that begin with a tag, without their indents.
std::vector<std::string> linesOf(const QString &text, const QString &tag)
{
    std::vector<std::string> result;
    for (const QString &line : text.split(u'\n')) {
        if (line.trimmed().startsWith(u'<' + tag + u' ')) {
            result.push_back(line.trimmed().toStdString());
        }
    }
    return result;
}

// One attribute of each line with a tag.
std::vector<std::string> valuesOf(const QString &text, const QString &tag, const QString &attribute)
{
    std::vector<std::string> result;
    for (const std::string &line : linesOf(text, tag)) {
        const QString rest = QString::fromStdString(line).section(u' ' + attribute + u"=\""_s, 1);
        result.push_back(rest.section(u'"', 0, 0).toStdString());
    }
    return result;
}

std::vector<std::string> formatNames(std::span<const ClipPtr> clips, ProjectOrientation orientation)
{
    std::vector<std::string> names;
    for (const std::string &name : valuesOf(FCPXMLWriter::event(clips, u"E"_s, orientation), u"format"_s, u"name"_s)) {
        if (!name.empty()) {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<std::string> formatNameAt(std::int64_t value, std::int32_t scale)
{
    const ClipPtr clip = clipAt("/a.mov");
    clip->frameDurationValue = value;
    clip->frameDurationScale = scale;
    return formatNames(std::vector{clip}, ProjectOrientation::horizontal);
}

} // namespace

TEST(FCPXMLWriter, OneClipInTwoBinsGivesTheWholeFileByteForByte)
{
    const ClipPtr clip = clipAt("/Shoot/KITCHEN 01.MOV", u"Kitchen"_s);
    clip->extraBins = {u"Dining Room"_s};
    EXPECT_EQ(FCPXMLWriter::event(std::vector{clip}, u"Smith & Co"_s).toStdString(),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE fcpxml>
<fcpxml version="1.10">
  <resources>
    <format id="r1" frameDuration="1001/60000s" width="3840" height="2160"/>
    <asset id="r2" name="KITCHEN 01" start="0s" duration="737737/60000s" hasVideo="1" hasAudio="1" format="r1">
      <media-rep kind="original-media" src="file:///Shoot/KITCHEN%2001.MOV"/>
    </asset>
  </resources>
  <library>
    <event name="Smith &amp; Co">
      <asset-clip ref="r2" name="KITCHEN 01" start="0s" duration="737737/60000s" format="r1">
        <keyword start="0s" duration="737737/60000s" value="Kitchen"/>
        <keyword start="0s" duration="737737/60000s" value="Dining Room"/>
      </asset-clip>
    </event>
  </library>
</fcpxml>)");
}

TEST(FCPXMLWriter, NoClipsGiveAValidShellWithAnEmptyEventWhateverTheOrientation)
{
    const std::string shell = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE fcpxml>
<fcpxml version="1.10">
  <resources>
  </resources>
  <library>
    <event name="Empty">
    </event>
  </library>
</fcpxml>)";
    EXPECT_EQ(FCPXMLWriter::event({}, u"Empty"_s).toStdString(), shell);
    EXPECT_EQ(FCPXMLWriter::event({}, u"Empty"_s, ProjectOrientation::horizontal).toStdString(), shell);
}

TEST(FCPXMLWriter, AClipThatWasNeverProbedGetsATwoByTwoFormatAndOneFrame)
{
    const std::vector clips{std::make_shared<MediaClip>(FileUrl("/a.mov"))};
    const QString text = FCPXMLWriter::event(clips, u"E"_s);
    EXPECT_THAT(linesOf(text, u"format"_s),
                ElementsAre(R"(<format id="r1" frameDuration="1001/60000s" width="2" height="2"/>)"));
    EXPECT_THAT(valuesOf(text, u"asset-clip"_s, u"duration"_s), ElementsAre("1001/60000s"));
    EXPECT_THAT(linesOf(text, u"keyword"_s), IsEmpty());
}

TEST(FCPXMLWriter, TheFiveMarkupCharactersInANameAreEscapedOnce)
{
    const QString text = FCPXMLWriter::event(std::vector{clipAt("/&<>\"'.mov", u"&amp;"_s)}, u"&<>\"'"_s);
    EXPECT_THAT(valuesOf(text, u"event"_s, u"name"_s), ElementsAre("&amp;&lt;&gt;&quot;&apos;"));
    EXPECT_THAT(valuesOf(text, u"asset"_s, u"name"_s), ElementsAre("&amp;&lt;&gt;&quot;&apos;"));
    EXPECT_THAT(valuesOf(text, u"keyword"_s, u"value"_s), ElementsAre("&amp;amp;"));
}

TEST(FCPXMLWriter, AUrlStaysPercentEncodedAndItsAmpersandIsEscaped)
{
    const QString text = FCPXMLWriter::event(std::vector{clipAt("/A & B/C 1%.mov")}, u"E"_s);
    EXPECT_THAT(valuesOf(text, u"media-rep"_s, u"src"_s), ElementsAre("file:///A%20&amp;%20B/C%201%25.mov"));
}

TEST(FCPXMLWriter, ClipsOfOneSizeAndFrameDurationShareAFormatAndAPortraitClipHasItsOwn)
{
    const QString text =
        FCPXMLWriter::event(std::vector{clipAt("/a.mov"), clipAt("/b.mov"), uprightClipAt("/c.mov")}, u"E"_s);
    EXPECT_THAT(linesOf(text, u"format"_s),
                ElementsAre(R"(<format id="r1" frameDuration="1001/60000s" width="3840" height="2160"/>)",
                            R"(<format id="r2" frameDuration="1001/60000s" width="2160" height="3840"/>)"));
    EXPECT_THAT(valuesOf(text, u"asset"_s, u"format"_s), ElementsAre("r1", "r1", "r2"));
}

TEST(FCPXMLWriter, FormatsTakeTheLowestIdsAndAssetsTheNext)
{
    const ClipPtr slower = clipAt("/b.mov");
    slower->frameDurationScale = 30000;
    const QString text = FCPXMLWriter::event(std::vector{clipAt("/a.mov"), slower}, u"E"_s);
    EXPECT_THAT(valuesOf(text, u"format"_s, u"id"_s), ElementsAre("r1", "r2"));
    EXPECT_THAT(valuesOf(text, u"asset"_s, u"id"_s), ElementsAre("r3", "r4"));
    EXPECT_THAT(valuesOf(text, u"asset-clip"_s, u"ref"_s), ElementsAre("r3", "r4"));
}

TEST(FCPXMLWriter, TheEventGroupsClipsByBinThenAgeWhileAssetsKeepTheInputOrder)
{
    const std::vector clips{clipAt("/late pool.mov", u"Pool"_s), clipAt("/late bed.mov", u"Bedroom"_s),
                            clipAt("/early pool.mov", u"Pool"_s), clipAt("/early bed.mov", u"Bedroom"_s)};
    clips[0]->creationDate = distantPast + 2h;
    clips[1]->creationDate = distantPast + 3h;
    clips[2]->creationDate = distantPast + 1h;
    const QString text = FCPXMLWriter::event(clips, u"E"_s);
    EXPECT_THAT(valuesOf(text, u"asset-clip"_s, u"name"_s),
                ElementsAre("early bed", "late bed", "early pool", "late pool"));
    EXPECT_THAT(valuesOf(text, u"asset"_s, u"name"_s), ElementsAre("late pool", "late bed", "early pool", "early bed"));
}

TEST(FCPXMLWriter, ClipsOfOneBinAndDateKeepTheInputOrder)
{
    std::vector<ClipPtr> clips;
    std::vector<std::string> names;
    for (int i = 0; i < 100; ++i) {
        names.push_back(std::to_string(i * 37 % 100));
        clips.push_back(clipAt(("/" + names.back() + ".mov").c_str(), u"Kitchen"_s));
    }
    EXPECT_EQ(valuesOf(FCPXMLWriter::event(clips, u"E"_s), u"asset-clip"_s, u"name"_s), names);
}

TEST(FCPXMLWriter, BinsAreOrderedByCodePointNotByLanguage)
{
    const std::vector clips{clipAt("/4.mov", u"\U0001F3E0 House"_s), clipAt("/3.mov", u"\uFF21 Wide"_s),
                            clipAt("/2.mov", u"\u00C4telier"_s), clipAt("/1.mov", u"attic"_s),
                            clipAt("/0.mov", u"Zoo"_s)};
    EXPECT_THAT(valuesOf(FCPXMLWriter::event(clips, u"E"_s), u"asset-clip"_s, u"name"_s),
                ElementsAre("0", "1", "2", "3", "4"));
}

TEST(FCPXMLWriter, AClipOfTwoBinsHasExactlyTwoKeywordsThePrimaryFirst)
{
    const ClipPtr clip = clipAt("/a.mov", u"Kitchen"_s);
    clip->extraBins = {u"Dining Room"_s, u"Kitchen"_s, u""_s};
    EXPECT_THAT(valuesOf(FCPXMLWriter::event(std::vector{clip}, u"E"_s), u"keyword"_s, u"value"_s),
                ElementsAre("Kitchen", "Dining Room"));
}

TEST(FCPXMLWriter, ADestinationChangesTheSourceOnlyAndTheNameStaysTheOld)
{
    const ClipPtr clip = clipAt("/card/C0042.MP4");
    clip->destinationURL = FileUrl("/Shoots/Kitchen/C0042 2.MP4");
    const QString text = FCPXMLWriter::event(std::vector{clip}, u"E"_s);
    EXPECT_THAT(valuesOf(text, u"media-rep"_s, u"src"_s), ElementsAre("file:///Shoots/Kitchen/C0042%202.MP4"));
    EXPECT_THAT(valuesOf(text, u"asset"_s, u"name"_s), ElementsAre("C0042"));
    EXPECT_THAT(valuesOf(text, u"asset-clip"_s, u"name"_s), ElementsAre("C0042"));
}

TEST(FCPXMLWriter, TheFileEndsInTheFinalClosingTagWithNoLineFeed)
{
    EXPECT_TRUE(FCPXMLWriter::event(std::vector{clipAt("/a.mov")}, u"E"_s).endsWith(u"  </library>\n</fcpxml>"_s));
}

TEST(FCPXMLWriter, TextThatXmlCannotHoldBecomesTheReplacementCharacter)
{
    QString name = u"tab\t bell\a nul"_s;
    name += QChar(0);
    name += QChar(0xD83C); // the first half of a pair, alone
    name += u"\U0001F3E0"_s;
    name += QChar(0xDFE0); // the second half, alone
    name += QChar(0xFFFE);
    name += QChar(0xFFFF);
    const QString text = FCPXMLWriter::event(std::vector{clipAt("/caf\xE9.mov")}, name);
    EXPECT_THAT(valuesOf(text, u"event"_s, u"name"_s),
                ElementsAre("tab\t bell\uFFFD nul\uFFFD\uFFFD\U0001F3E0\uFFFD\uFFFD\uFFFD"));
    EXPECT_THAT(valuesOf(text, u"asset"_s, u"name"_s), ElementsAre("caf\uFFFD"));
    EXPECT_THAT(valuesOf(text, u"media-rep"_s, u"src"_s), ElementsAre("file:///caf%E9.mov"))
        << "the file must still be found by its bytes";
}

TEST(FCPXMLWriter, APairOfSurrogatesAtTheEndOfANameIsKept)
{
    EXPECT_THAT(valuesOf(FCPXMLWriter::event({}, u"\U0001F3E0"_s), u"event"_s, u"name"_s), ElementsAre("\U0001F3E0"));
}

TEST(FCPXMLWriter, SizesThatNoPictureHasStayNumbers)
{
    const ClipPtr clip = clipAt("/a.mov");
    clip->displaySize = {std::numeric_limits<double>::quiet_NaN(), 1080.5};
    EXPECT_THAT(valuesOf(FCPXMLWriter::event(std::vector{clip}, u"E"_s), u"format"_s, u"width"_s), ElementsAre("2"));
    EXPECT_THAT(valuesOf(FCPXMLWriter::event(std::vector{clip}, u"E"_s), u"format"_s, u"height"_s),
                ElementsAre("1081"));
    clip->displaySize = {std::numeric_limits<double>::infinity(), -5.0};
    EXPECT_THAT(linesOf(FCPXMLWriter::event(std::vector{clip}, u"E"_s), u"format"_s),
                ElementsAre(R"(<format id="r1" frameDuration="1001/60000s" width="1000000000000000" height="2"/>)"));
}

TEST(FCPXMLWriter, AHorizontalProjectAddsItsFormatAfterTheAssetsAndAnEmptyTimelineAfterTheClips)
{
    const std::vector clips{clipAt("/a.mov", u"Pool"_s), clipAt("/b.mov", u"Bedroom"_s)};
    clips[1]->frameDurationScale = 30000; // the first of the list decides, not the first of the event
    EXPECT_EQ(FCPXMLWriter::event(clips, u"A & B"_s, ProjectOrientation::horizontal).toStdString(),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE fcpxml>
<fcpxml version="1.10">
  <resources>
    <format id="r1" frameDuration="1001/60000s" width="3840" height="2160"/>
    <format id="r2" frameDuration="1001/30000s" width="3840" height="2160"/>
    <asset id="r3" name="a" start="0s" duration="737737/60000s" hasVideo="1" hasAudio="1" format="r1">
      <media-rep kind="original-media" src="file:///a.mov"/>
    </asset>
    <asset id="r4" name="b" start="0s" duration="369369/30000s" hasVideo="1" hasAudio="1" format="r2">
      <media-rep kind="original-media" src="file:///b.mov"/>
    </asset>
    <format id="r5" name="FFVideoFormat3840x2160p5994" frameDuration="1001/60000s" width="3840" height="2160"/>
  </resources>
  <library>
    <event name="A &amp; B">
      <asset-clip ref="r4" name="b" start="0s" duration="369369/30000s" format="r2">
        <keyword start="0s" duration="369369/30000s" value="Bedroom"/>
      </asset-clip>
      <asset-clip ref="r3" name="a" start="0s" duration="737737/60000s" format="r1">
        <keyword start="0s" duration="737737/60000s" value="Pool"/>
      </asset-clip>
      <project name="A &amp; B">
        <sequence format="r5" duration="0s" tcStart="0s" tcFormat="NDF">
          <spine/>
        </sequence>
      </project>
    </event>
  </library>
</fcpxml>)");
}

TEST(FCPXMLWriter, AutomaticIsHorizontalUpToHalfVerticalAndVerticalBeyondWhichNeverYieldsAProject)
{
    std::vector clips{uprightClipAt("/a.mov"), uprightClipAt("/b.mov"), clipAt("/c.mov"), clipAt("/d.mov")};
    EXPECT_THAT(formatNames(clips, ProjectOrientation::automatic), ElementsAre("FFVideoFormat3840x2160p5994"));
    clips[2] = uprightClipAt("/c.mov");
    EXPECT_EQ(FCPXMLWriter::event(clips, u"E"_s, ProjectOrientation::automatic), FCPXMLWriter::event(clips, u"E"_s));
    EXPECT_EQ(FCPXMLWriter::event(clips, u"E"_s, ProjectOrientation::vertical), FCPXMLWriter::event(clips, u"E"_s));
}

TEST(FCPXMLWriter, OnlyListedFrameRatesYieldAProjectAndATrue23976IsNotOne)
{
    EXPECT_THAT(formatNameAt(100, 2397), ElementsAre("FFVideoFormat3840x2160p2398"));
    EXPECT_THAT(formatNameAt(1, 24), ElementsAre("FFVideoFormat3840x2160p24"));
    EXPECT_THAT(formatNameAt(1, 25), ElementsAre("FFVideoFormat3840x2160p25"));
    EXPECT_THAT(formatNameAt(1001, 30000), ElementsAre("FFVideoFormat3840x2160p2997"));
    EXPECT_THAT(formatNameAt(512, 15360), ElementsAre("FFVideoFormat3840x2160p30"));
    EXPECT_THAT(formatNameAt(1, 50), ElementsAre("FFVideoFormat3840x2160p50"));
    EXPECT_THAT(formatNameAt(1, 60), ElementsAre("FFVideoFormat3840x2160p60"));
    EXPECT_THAT(formatNameAt(0, 60), ElementsAre("FFVideoFormat3840x2160p60")) << "a frame of no length counts as one";
    EXPECT_THAT(formatNameAt(1001, 24000), IsEmpty());
    EXPECT_THAT(formatNameAt(1, 120), IsEmpty());
}
