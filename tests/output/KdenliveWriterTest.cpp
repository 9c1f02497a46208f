#include "output/KdenliveWriter.h"

#include <set>

#include <gmock/gmock.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "core/bins/RoomLabel.h"
#include "tests/output/KdenliveProject.h"
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

ClipPtr kdenliveClip(const std::string &path, const QString &bin, std::vector<QString> extras = {})
{
    auto clip = std::make_shared<MediaClip>(FileUrl(path));
    clip->duration = 2.0;
    clip->displaySize = {1920, 1080};
    clip->frameDurationValue = 1;
    clip->frameDurationScale = 25;
    clip->primaryBin = bin;
    clip->extraBins = std::move(extras);
    return clip;
}

} // namespace

TEST(KdenliveWriter, EveryClipIsOnceInTheFolderOfItsPrimaryBinNumberedRoomsIncluded)
{
    const ReadProject project(KdenliveWriter::project(
        std::vector{kdenliveClip("/1.mov", u"Bedroom 2"_s, {u"Closet"_s}), kdenliveClip("/2.mov", u"Bedroom 1"_s),
                    kdenliveClip("/3.mov", u"Bedroom 2"_s), kdenliveClip("/4.mov", u""_s)},
        u"House"_s));
    EXPECT_EQ(project.problem, "");
    EXPECT_THAT(project.folders(), UnorderedElementsAre(Pair("Bedroom 1", "2.mov"), Pair("Bedroom 2", "1.mov"),
                                                        Pair("Bedroom 2", "3.mov"), Pair("Unsorted", "4.mov")));
    EXPECT_EQ(project.entries.at("main_bin").size(), 4);
    EXPECT_EQ(project.entries.at("playlist2").size(), 4);
}

TEST(KdenliveWriter, FurtherBinsAreTagsWithAColorOfTheirOwn)
{
    const ReadProject project(
        KdenliveWriter::project(std::vector{kdenliveClip("/1.mov", u"Kitchen"_s, {u"Dining Room"_s, u"Living Room"_s}),
                                            kdenliveClip("/2.mov", u"Pool"_s)},
                                u"House"_s));
    Properties tags; // names by color
    for (const auto &[name, value] : project.properties.at("main_bin")) {
        if (name.starts_with("kdenlive:docproperties.tag")) {
            tags[value.substr(0, value.find(':'))] = value.substr(value.find(':') + 1);
        }
    }
    EXPECT_THAT(tags, UnorderedElementsAre(Pair(testing::_, "Dining Room"), Pair(testing::_, "Living Room")));
    std::vector<std::string> ofFirst;
    for (const auto &[id, clip] : project.properties) {
        if (const auto list = clip.find("kdenlive:tags"); list != clip.end()) {
            for (const QString &color : QString::fromStdString(list->second).split(u';')) {
                ofFirst.push_back(tags.at(color.toStdString()));
            }
        }
    }
    EXPECT_THAT(ofFirst, ElementsAre("Dining Room", "Living Room")) << "and none of the second clip";
}

TEST(KdenliveWriter, TheColorOfATagIsTheSameInEveryProjectAndNoTwoAreAlike)
{
    std::vector<QString> bins;
    for (const RoomLabel &label : RoomLabel::all()) {
        bins.push_back(label.name);
        bins.push_back(label.name + u" 2"_s);
    }
    const ReadProject all(KdenliveWriter::project(std::vector{kdenliveClip("/1.mov", u"Unsorted"_s, bins)}, u"A"_s));
    const ReadProject one(
        KdenliveWriter::project(std::vector{kdenliveClip("/1.mov", u"Unsorted"_s, {u"Pool"_s})}, u"B"_s));
    std::set<std::string> colors;
    std::string pool;
    for (const auto &[name, value] : all.properties.at("main_bin")) {
        if (name.starts_with("kdenlive:docproperties.tag")) {
            colors.insert(value.substr(0, value.find(':')));
            pool = value.ends_with(":Pool") ? value : pool;
        }
    }
    EXPECT_EQ(colors.size(), bins.size());
    EXPECT_EQ(one.properties.at("main_bin").at("kdenlive:docproperties.tag1"), pool);
}

TEST(KdenliveWriter, TheProfileIsTheMostCommonSizeAndRate)
{
    const ClipPtr wide = kdenliveClip("/1.mov", u"Pool"_s);
    wide->displaySize = {3840, 2160};
    wide->frameDurationValue = 1001;
    wide->frameDurationScale = 60'000;
    const ReadProject project(KdenliveWriter::project(std::vector{wide}, u"House"_s));
    EXPECT_EQ(project.attribute("profile", u"width"_s), "3840");
    EXPECT_EQ(project.attribute("profile", u"height"_s), "2160");
    EXPECT_EQ(project.attribute("profile", u"frame_rate_num"_s), "60000");
    EXPECT_EQ(project.attribute("profile", u"frame_rate_den"_s), "1001");
    EXPECT_EQ(project.attribute("profile", u"display_aspect_num"_s), "16");
    EXPECT_EQ(project.attribute("profile", u"display_aspect_den"_s), "9");
}

TEST(KdenliveWriter, AGuideMarksEachBinOnTheTimeline)
{
    const ReadProject project(KdenliveWriter::project(
        std::vector{kdenliveClip("/1.mov", u"Pool"_s), kdenliveClip("/2.mov", u"Kitchen"_s)}, u"House"_s));
    const QJsonArray guides =
        QJsonDocument::fromJson(
            QByteArray::fromStdString(project.properties.at("main_bin").at("kdenlive:docproperties.guides")))
            .array();
    EXPECT_EQ(guides, (QJsonArray{QJsonObject{{u"comment"_s, u"Kitchen"_s}, {u"pos"_s, 0}, {u"type"_s, 0}},
                                  QJsonObject{{u"comment"_s, u"Pool"_s}, {u"pos"_s, 50}, {u"type"_s, 0}}}));
}

TEST(KdenliveWriter, AClipThatWasNeverReadIsInItsFolderAndNotOnTheTimeline)
{
    const ReadProject project(
        KdenliveWriter::project(std::vector{std::make_shared<MediaClip>(FileUrl("/broken.mov"))}, u"House"_s));
    EXPECT_THAT(project.folders(), ElementsAre(Pair("Unsorted", "broken.mov")));
    EXPECT_THAT(project.entries, ElementsAre(Pair("main_bin", ElementsAre("clip3"))));
}

TEST(KdenliveWriter, AMacFindsTheFilesOnItsVolume)
{
    const ReadProject project(KdenliveWriter::project(std::vector{kdenliveClip("/media/ann/CARD/a.mov", u"Pool"_s)},
                                                      u"House"_s, MediaPaths::onMac({{"/media/ann/CARD", "CARD"}})));
    EXPECT_EQ(project.properties.at("clip3").at("resource"), "/Volumes/CARD/a.mov");
}

RC_GTEST_PROP(KdenliveWriterProperty, AnyNamesGiveAWellFormedProjectWithEveryClipOnce, ())
{
    const auto text = [] {
        return QString::fromStdU16String(*rc::gen::resize(
            12, rc::gen::container<std::u16string>(rc::gen::cast<char16_t>(rc::gen::inRange(0, 0x10000)))));
    };
    std::vector<ClipPtr> clips;
    const int count = *rc::gen::inRange(0, 6);
    for (int i = 0; i < count; ++i) {
        clips.push_back(
            kdenliveClip("/" + text().remove(u'/').remove(QChar(0)).toStdString() + "x.mov", text(), {text(), text()}));
    }
    const ReadProject project(KdenliveWriter::project(clips, text()));
    RC_ASSERT(project.problem == "");
    RC_ASSERT(project.folders().size() == clips.size());
}
