#include <gmock/gmock.h>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "core/clips/MediaClip.h"
#include "core/projects/ClipRecord.h"
#include "core/projects/ProjectJson.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

MediaClip clipOf(double duration, std::int64_t value, std::int32_t scale)
{
    MediaClip clip(FileUrl("/shoot/a.mov"));
    clip.duration = duration;
    clip.frameDurationValue = value;
    clip.frameDurationScale = scale;
    return clip;
}

// A record of which no two fields hold the same.
ClipRecord recordOfManyValues()
{
    return {.path = FileUrl("/shoot/a.mov"),
            .duration = 12.5,
            .naturalW = 3840,
            .naturalH = 2160,
            .displayW = 1080,
            .displayH = 1920,
            .frameDurationValue = 512,
            .frameDurationScale = 15360,
            .creationDate = std::chrono::sys_days{std::chrono::year{2001} / std::chrono::January / 2},
            .cameraModel = u"TestCam"_s,
            .primaryBin = u"Kitchen 2"_s,
            .extraBins = {u"Dining Room"_s, u"Pool"_s},
            .confidence = 0.5,
            .runnerUp = u"Garage"_s,
            .runnerUpScore = 0.25,
            .needsReview = true,
            .reviewReason = u"too dark"_s,
            .humanFraction = 0.125};
}

} // namespace

TEST(MediaClip, StartsWithTheDefaultsOfAClipThatWasNeverRead)
{
    const MediaClip clip(FileUrl("/shoot/a.mov"));
    EXPECT_EQ(clip.duration, 0.0);
    EXPECT_EQ(clip.displaySize, QSizeF(0.0, 0.0));
    EXPECT_EQ(clip.frameDurationValue, 1001);
    EXPECT_EQ(clip.frameDurationScale, 60000);
    EXPECT_EQ(clip.creationDate, distantPast);
    EXPECT_FALSE(clip.id.isNull());
    EXPECT_NE(clip.id, MediaClip(clip.url).id);
}

TEST(MediaClip, BinsDropEmptyNamesAndDoublesAndKeepTheFirstAppearance)
{
    MediaClip clip(FileUrl("/shoot/a.mov"));
    EXPECT_THAT(clip.bins(), IsEmpty());
    clip.extraBins = {u"Kitchen"_s};
    EXPECT_THAT(clip.bins(), ElementsAre(u"Kitchen"_s));
    clip.primaryBin = u"Kitchen"_s;
    clip.extraBins = {u"Pool"_s, u"Kitchen"_s, u"Pool"_s};
    EXPECT_THAT(clip.bins(), ElementsAre(u"Kitchen"_s, u"Pool"_s));
}

TEST(MediaClip, IsInItsPrimaryBinAndInEachFurtherOneAndNeverInOneWithoutAName)
{
    MediaClip clip(FileUrl("/shoot/a.mov"));
    EXPECT_FALSE(clip.isIn(QString()));
    clip.primaryBin = u"Kitchen"_s;
    clip.extraBins = {u"Pool"_s, QString()};
    EXPECT_TRUE(clip.isIn(u"Kitchen"_s));
    EXPECT_TRUE(clip.isIn(u"Pool"_s));
    EXPECT_FALSE(clip.isIn(u"Garage"_s));
    EXPECT_FALSE(clip.isIn(QString()));
}

TEST(MediaClip, IsVerticalOnlyWhenNarrowerThanTall)
{
    MediaClip clip(FileUrl("/shoot/a.mov"));
    EXPECT_FALSE(clip.isVertical());
    clip.displaySize = {2160, 3840};
    EXPECT_TRUE(clip.isVertical());
    clip.displaySize = {1080, 1080};
    EXPECT_FALSE(clip.isVertical());
}

TEST(MediaClip, RationalDurationLiesOnTheFrameGrid)
{
    EXPECT_EQ(clipOf(10.0, 1001, 60000).rationalDuration(), u"599599/60000s"_s);
    EXPECT_EQ(clipOf(12.3, 1001, 60000).rationalDuration(), u"737737/60000s"_s);
    EXPECT_EQ(clipOf(2.5, 1, 1).rationalDuration(), u"3/1s"_s) << "halves round away from zero";
}

TEST(MediaClip, RationalDurationIsAtLeastOneFrame)
{
    EXPECT_EQ(clipOf(0.0, 1001, 60000).rationalDuration(), u"1001/60000s"_s);
}

TEST(MediaClip, RationalDurationOfAFrameThatLastsNothingDividesByOne)
{
    EXPECT_EQ(clipOf(2.0, 0, 25).rationalDuration(), u"0/25s"_s);
}

TEST(MediaClip, RationalDurationOfALengthNoFileCanHaveStaysANumber)
{
    EXPECT_EQ(clipOf(std::numeric_limits<double>::infinity(), 1001, 60000).rationalDuration(), u"1001/60000s"_s);
    EXPECT_THAT(clipOf(1e300, 1001, 60000).rationalDuration().toStdString(), testing::MatchesRegex("[0-9]+/60000s"));
}

TEST(MediaClip, OfTheLongestFrameAClipHasOne)
{
    constexpr auto longest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(clipOf(1e300, longest, 60000).durationTicks(), longest);
}

TEST(MediaClip, FootageIsAtItsSourceAndAtItsCopyOnceTheSourceIsGone)
{
    const TempFolder folder;
    MediaClip clip(FileUrl(folder.write("a.mov")));
    EXPECT_EQ(clip.footageURL(), clip.url);
    clip.destinationURL = FileUrl(folder.write("Pool/a.mov"));
    EXPECT_EQ(clip.footageURL(), clip.url);
    std::filesystem::remove(clip.url.path());
    EXPECT_EQ(clip.footageURL(), clip.destinationURL);
    EXPECT_FALSE(clip.isFootageGone());
    std::filesystem::remove(clip.destinationURL->path());
    EXPECT_TRUE(clip.isFootageGone());
    clip.foundURL = FileUrl(folder.write("Garage/a.mov"));
    EXPECT_EQ(clip.footageURL(), clip.foundURL);
}

TEST(ClipRecord, ARoundTripKeepsWhatIsStoredAndLosesThePrint)
{
    MediaClip clip(FileUrl("/shoot/a.mov"));
    clip.duration = 12.5;
    clip.naturalSize = {3840, 2160};
    clip.displaySize = {2160, 3840};
    clip.frameDurationValue = 512;
    clip.frameDurationScale = 15360;
    clip.creationDate = distantPast + std::chrono::hours(5);
    clip.cameraModel = u"TestCam"_s;
    clip.primaryBin = u"Kitchen 2"_s;
    clip.extraBins = {u"Dining Room"_s};
    clip.confidence = 0.5;
    clip.runnerUp = u"Dining Room"_s;
    clip.runnerUpScore = 0.25;
    clip.needsReview = true;
    clip.reviewReason = u"might be a different kitchen"_s;
    clip.humanFraction = 0.01;
    clip.featurePrint = std::make_shared<FeaturePrint>(std::vector<float>{1.0f});
    clip.rawIdentifiers = {{u"kitchen"_s, 0.9}};
    clip.thumbnail = Thumbnail(QImage(2, 2, QImage::Format_RGB888));
    clip.destinationURL = FileUrl("/elsewhere/a.mov");

    const ClipRecord record = ClipRecord::fromClip(clip);
    const ClipPtr reopened = record.toClip();

    EXPECT_EQ(ClipRecord::fromClip(*reopened), record);
    EXPECT_EQ(record.displayH, 3840);
    EXPECT_TRUE(reopened->needsReview);
    EXPECT_EQ(reopened->reviewReason, u"might be a different kitchen"_s);
    EXPECT_NE(reopened->id, clip.id);
    EXPECT_EQ(reopened->featurePrint, nullptr);
    EXPECT_THAT(reopened->rawIdentifiers, IsEmpty());
    EXPECT_TRUE(reopened->thumbnail.isNull());
    EXPECT_EQ(reopened->destinationURL, std::nullopt);
}

TEST(ClipRecord, GivesEachFieldToItsClipAndTakesItFromThere)
{
    const ClipRecord record = recordOfManyValues();
    const ClipPtr clip = record.toClip();
    EXPECT_EQ(clip->url, record.path);
    EXPECT_EQ(clip->duration, 12.5);
    EXPECT_EQ(clip->naturalSize, QSizeF(3840, 2160));
    EXPECT_EQ(clip->displaySize, QSizeF(1080, 1920));
    EXPECT_EQ(clip->frameDurationValue, 512);
    EXPECT_EQ(clip->frameDurationScale, 15360);
    EXPECT_EQ(clip->creationDate, record.creationDate);
    EXPECT_EQ(clip->cameraModel, u"TestCam"_s);
    EXPECT_EQ(clip->primaryBin, u"Kitchen 2"_s);
    EXPECT_THAT(clip->extraBins, ElementsAre(u"Dining Room"_s, u"Pool"_s));
    EXPECT_EQ(clip->confidence, 0.5);
    EXPECT_EQ(clip->runnerUp, u"Garage"_s);
    EXPECT_EQ(clip->runnerUpScore, 0.25);
    EXPECT_TRUE(clip->needsReview);
    EXPECT_EQ(clip->reviewReason, u"too dark"_s);
    EXPECT_EQ(clip->humanFraction, 0.125);
    EXPECT_EQ(ClipRecord::fromClip(*clip), record);
}

TEST(ClipRecord, IsStoredUnderTheKeysOfProjectsFromBefore)
{
    const QByteArray project = encodeProject({.summary = {}, .clips = {recordOfManyValues()}});
    EXPECT_EQ(QJsonDocument::fromJson(project)[u"clips"_s][0].toObject(),
              (QJsonObject{{u"path"_s, u"/shoot/a.mov"_s},
                           {u"duration"_s, 12.5},
                           {u"naturalW"_s, 3840},
                           {u"naturalH"_s, 2160},
                           {u"displayW"_s, 1080},
                           {u"displayH"_s, 1920},
                           {u"frameDurationValue"_s, 512},
                           {u"frameDurationScale"_s, 15360},
                           {u"creationDate"_s, 86400}, // seconds since 2001
                           {u"cameraModel"_s, u"TestCam"_s},
                           {u"primaryBin"_s, u"Kitchen 2"_s},
                           {u"extraBins"_s, QJsonArray{u"Dining Room"_s, u"Pool"_s}},
                           {u"confidence"_s, 0.5},
                           {u"runnerUp"_s, u"Garage"_s},
                           {u"runnerUpScore"_s, 0.25},
                           {u"needsReview"_s, true},
                           {u"reviewReason"_s, u"too dark"_s},
                           {u"humanFraction"_s, 0.125}}));
}

TEST(ClipRecord, AClipWhoseDateWasNeverReadSortsFirst)
{
    EXPECT_LT(MediaClip(FileUrl("/a.mov")).creationDate, Date(std::chrono::seconds(-2'000'000'000)));
}

TEST(FeaturePrint, DistanceIsEuclideanAndNoneBetweenUnlikeLengths)
{
    const FeaturePrint a({1.0f, -2.0f});
    EXPECT_EQ(a.computeDistance(FeaturePrint({4.0f, 2.0f})), 5.0f);
    EXPECT_EQ(a.computeDistance(a), 0.0f);
    EXPECT_EQ(a.computeDistance(FeaturePrint({3.0f})), std::nullopt);
    EXPECT_EQ(a.computeDistance(FeaturePrint({std::numeric_limits<float>::quiet_NaN(), 0.0f})), std::nullopt);
}
