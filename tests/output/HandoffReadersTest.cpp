#include <algorithm>

#include <gmock/gmock.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtGui/QImage>

#include "core/files/AtomicFile.h"
#include "output/Handoff.h"
#include "tests/output/KdenliveProject.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

// A real clip of one second at 25 frames a second in one colour.
ClipPtr coloredClip(const fs::path &path, const QString &bin, const std::string &color)
{
    const auto &media =
        sharedMedia(color + ".mov", "-f lavfi -i color=" + color +
                                        ":s=160x90:r=25:d=1 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
    fs::copy_file(media, path);
    auto clip = std::make_shared<MediaClip>(FileUrl(path));
    clip->duration = 1.0;
    clip->displaySize = {160, 90};
    clip->frameDurationValue = 512;
    clip->frameDurationScale = 12'800;
    clip->primaryBin = bin;
    return clip;
}

// Returns all that a program printed, standard error included; fails the test if the program does.
std::string outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PYTHONPATH"_s, QStringLiteral(LARKSPAN_READERS));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(-1)) << process.errorString().toStdString();
    const std::string output = process.readAll().toStdString();
    EXPECT_EQ(process.exitCode(), 0) << output;
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << output;
    return output;
}

// The one timeline that OpenTimelineIO reads from a file.
QJsonObject readTimeline(const fs::path &file)
{
    const std::string output = outputOf(QStringLiteral(LARKSPAN_PYTHON),
                                        {u"-B"_s, QStringLiteral(LARKSPAN_OTIO_SUMMARY), QString::fromStdString(file)});
    const QJsonArray timelines = QJsonDocument::fromJson(QByteArray::fromStdString(output)).array();
    EXPECT_EQ(timelines.size(), 1) << output;
    return timelines.at(0).toObject();
}

// One member of every object in a list.
std::vector<std::string> membersOf(const QJsonValue &list, const QString &name)
{
    std::vector<std::string> members;
    for (const QJsonValue &object : list.toArray()) {
        const QJsonValue value = object[name];
        members.push_back(value.isArray() ? QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact).toStdString()
                                          : value.toString().toStdString());
    }
    return members;
}

class HandoffReaders : public testing::Test
{
protected:
    fs::path written(HandoffFormat format) const
    {
        fs::path file = folder / (u"file"_s + handoffSuffix(format)).toStdString();
        const QByteArray text = handoffText(format, clips, u"Smith & \"Co\""_s);
        EXPECT_TRUE(writeFileAtomically(file, text.toStdString()));
        return file;
    }

    const TempFolder folder;
    std::vector<ClipPtr> clips{coloredClip(folder / "blue 100% #1?.mov", u"Pool"_s, "blue"),
                               coloredClip(folder / "red & <\"'>.mov", u"Kitchen"_s, "red"),
                               coloredClip(folder / "gr\303\274n = a;b|c,d.mov", u"Kitchen"_s, "lime")};
};

} // namespace

TEST_F(HandoffReaders, OpenTimelineIoReadsTheTimelineInTourOrderWithItsMarkersAndBins)
{
    clips[1]->timecode = Timecode::parsed(u"10:00:00:00"_s, 25);
    clips[1]->extraBins = {u"Dining Room"_s};
    const QJsonObject timeline = readTimeline(written(HandoffFormat::otio));
    EXPECT_EQ(timeline[u"name"_s], u"Smith & \"Co\""_s);
    EXPECT_EQ(timeline[u"duration"_s], (QJsonArray{75, 25}));
    EXPECT_EQ(timeline[u"markers"_s],
              (QJsonArray{QJsonArray{u"Kitchen"_s, QJsonArray{0, 25}}, QJsonArray{u"Pool"_s, QJsonArray{50, 25}}}));
    const QJsonValue track = timeline[u"tracks"_s].toArray().at(0);
    EXPECT_THAT(membersOf(track, u"name"_s), ElementsAre("red & <\"'>", "gr\303\274n = a;b|c,d", "blue 100% #1?"));
    EXPECT_THAT(membersOf(track, u"start"_s), ElementsAre("[900000,25]", "[0,25]", "[0,25]"));
    EXPECT_THAT(membersOf(track, u"at"_s), ElementsAre("[0,25]", "[25,25]", "[50,25]"));
    EXPECT_THAT(membersOf(track, u"duration"_s), ElementsAre("[25,25]", "[25,25]", "[25,25]"));
    EXPECT_THAT(membersOf(track, u"bins"_s),
                ElementsAre(R"(["Kitchen","Dining Room"])", R"(["Kitchen"])", R"(["Pool"])"));
    EXPECT_EQ(membersOf(track, u"url"_s).back(), clips[0]->url.absoluteString().toStdString());
}

TEST_F(HandoffReaders, OpenTimelineIoReadsTheSameTimelineFromTheFcpxmlProject)
{
    clips[1]->timecode = Timecode::parsed(u"10:00:00:00"_s, 25);
    const QJsonObject timeline = readTimeline(written(HandoffFormat::fcpxmlTimeline));
    EXPECT_EQ(timeline[u"name"_s], u"Smith & \"Co\""_s);
    EXPECT_EQ(timeline[u"duration"_s], (QJsonArray{75, 25}));
    const QJsonValue track = timeline[u"tracks"_s].toArray().at(0);
    EXPECT_THAT(membersOf(track, u"name"_s), ElementsAre("red & <\"'>", "gr\303\274n = a;b|c,d", "blue 100% #1?"));
    EXPECT_THAT(membersOf(track, u"at"_s), ElementsAre("[0,25]", "[25,25]", "[50,25]"));
    EXPECT_THAT(membersOf(track, u"start"_s), ElementsAre("[900000,25]", "[0,25]", "[0,25]"));
    EXPECT_THAT(membersOf(track, u"markers"_s), ElementsAre(R"(["Kitchen"])", "[]", R"(["Pool"])"));
}

TEST_F(HandoffReaders, OpenTimelineIoReadsEveryTimelineOfAnEmptyShoot)
{
    clips.clear();
    EXPECT_EQ(readTimeline(written(HandoffFormat::otio))[u"tracks"_s].toArray().at(0).toArray().size(), 0);
    outputOf(QStringLiteral(LARKSPAN_PYTHON), {u"-B"_s, QStringLiteral(LARKSPAN_OTIO_SUMMARY),
                                               QString::fromStdString(written(HandoffFormat::fcpxmlTimeline))});
}

TEST_F(HandoffReaders, MeltReadsTheKdenliveProjectAndPlaysEveryClipInTourOrder)
{
    const fs::path project = written(HandoffFormat::kdenlive);
    fs::create_directory(folder / "frames");
    const std::string said =
        outputOf(u"melt"_s, {QString::fromStdString(project), u"-consumer"_s,
                             u"avformat:"_s + QString::fromStdString(folder / "frames/%03d.png"), u"f=image2"_s,
                             u"vcodec=png"_s, u"an=1"_s, u"real_time=-1"_s, u"-silent"_s});
    EXPECT_THAT(said, Not(AnyOf(HasSubstr("rror"), HasSubstr("ailed"), HasSubstr("invalid"))));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "frames"), fs::directory_iterator()), 75);
    const auto colorOf = [&](const char *frame) {
        const QColor color = QImage(QString::fromStdString(folder / "frames" / frame)).pixelColor(80, 45);
        const int strongest = std::max({color.red(), color.green(), color.blue()});
        return color.red() == strongest ? "red" : color.green() == strongest ? "green" : "blue";
    };
    EXPECT_STREQ(colorOf("002.png"), "red");
    EXPECT_STREQ(colorOf("024.png"), "red");
    EXPECT_STREQ(colorOf("027.png"), "green");
    EXPECT_STREQ(colorOf("049.png"), "green");
    EXPECT_STREQ(colorOf("052.png"), "blue");
    EXPECT_STREQ(colorOf("074.png"), "blue");
}

TEST_F(HandoffReaders, MeltReadsTheKdenliveProjectOfAnEmptyShoot)
{
    clips.clear();
    EXPECT_THAT(
        outputOf(u"melt"_s, {QString::fromStdString(written(HandoffFormat::kdenlive)), u"-consumer"_s, u"xml"_s}),
        HasSubstr("<mlt "));
}

// Kdenlive is too large to install for one test; the picture that LARKSPAN_PICTURES names shows what it made of it.
TEST_F(HandoffReaders, KdenliveOpensItsProjectWithoutAQuestionAndSavesTheSameFoldersAndTags)
{
    if (QStandardPaths::findExecutable(u"kdenlive"_s).isEmpty()) {
        GTEST_SKIP() << "Kdenlive isn't installed";
    }
    clips[1]->extraBins = {u"Dining Room"_s};
    const fs::path project = written(HandoffFormat::kdenlive);
    const ReadProject before(QString::fromStdString(bytesOf(project)));
    QStringList arguments{QStringLiteral(LARKSPAN_SOURCES "/tests/output/kdenlive_saves.sh"),
                          QString::fromStdString(project)};
    if (qEnvironmentVariableIsSet("LARKSPAN_PICTURES")) {
        arguments.append(qEnvironmentVariable("LARKSPAN_PICTURES") + u"/kdenlive.png"_s);
    }
    outputOf(QStringLiteral(LARKSPAN_SOURCES "/script/with-display"), arguments);
    const ReadProject saved(QString::fromStdString(bytesOf(project)));
    EXPECT_THAT(saved.folders(),
                UnorderedElementsAre(Pair("Pool", "blue 100% #1?.mov"), Pair("Kitchen", "red & <\"'>.mov"),
                                     Pair("Kitchen", "gr\303\274n = a;b|c,d.mov")));
    EXPECT_EQ(saved.properties.at("main_bin").at("kdenlive:docproperties.tag1"),
              before.properties.at("main_bin").at("kdenlive:docproperties.tag1"));
    EXPECT_EQ(saved.attribute("profile", u"width"_s), "160");
    EXPECT_EQ(saved.attribute("profile", u"frame_rate_num"_s), "25");
}
