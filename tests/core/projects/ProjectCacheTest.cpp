// The files that sorted shoots are kept in.
#include <atomic>
#include <limits>
#include <thread>

#include <sys/stat.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "core/copies/CopyJournal.h"
#include "core/copies/CopyLog.h"
#include "core/projects/ProjectCache.h"
#include "core/projects/ProjectJson.h"
#include "core/settings/SettingsStore.h"
#include "tests/core/projects/SomeProject.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

std::vector<QString> namesOf(const std::vector<ProjectSummary> &projects)
{
    std::vector<QString> names;
    for (const ProjectSummary &project : projects) {
        names.push_back(project.name);
    }
    return names;
}

} // namespace

class ProjectCacheTest : public testing::Test
{
protected:
    fs::path fileOf(const CachedProject &project) const
    {
        return folder / (project.summary.id.toStdString() + ".json");
    }

    // Returns the projects that another start of the program finds.
    std::vector<ProjectSummary> stored() const { return ProjectFiles(folder.path()).loadIndex(); }

    const TempFolder folder;
    ProjectCache cache{folder.path()};
    const CachedProject house = projectOf(FileUrl("/Shoots/House"));
};

TEST_F(ProjectCacheTest, AProjectComesBackAsItWasSaved)
{
    EXPECT_THAT(cache.save(house), ElementsAre(house.summary));
    EXPECT_EQ(cache.open(house.summary.id), house);
    EXPECT_THAT(stored(), ElementsAre(house.summary));
    EXPECT_THAT(ProjectCache(folder.path()).projects(), ElementsAre(house.summary));
}

TEST_F(ProjectCacheTest, TheFileHoldsEscapedSlashesAndSecondsSince2001AndNoMoreThanItsKeys)
{
    cache.save(house);
    cache.flush();
    const std::string text = bytesOf(fileOf(house));
    EXPECT_NE(text.find(R"("folderPath":"\/Shoots\/House")"), std::string::npos);
    EXPECT_NE(text.find(R"("Hallway \/ Stairs")"), std::string::npos);
    EXPECT_NE(text.find(R"("savedAt":799581600)"), std::string::npos) << text;
    EXPECT_EQ(text.find('\n'), std::string::npos);
    const QJsonObject project = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    EXPECT_EQ(project.keys(), QStringList({u"binCount"_s, u"clipCount"_s, u"clips"_s, u"folderPath"_s, u"id"_s,
                                           u"name"_s, u"reviewCount"_s, u"savedAt"_s}));
    const QJsonObject clip = project[u"clips"_s][0].toObject();
    EXPECT_EQ(clip.size(), 18);
    EXPECT_EQ(clip[u"creationDate"_s].toDouble(), 799581600.123456);
    EXPECT_EQ(clip[u"frameDurationValue"_s].toInteger(), std::numeric_limits<qint64>::max());
    const QJsonArray index = QJsonDocument::fromJson(QByteArray::fromStdString(bytesOf(folder / "index.json"))).array();
    EXPECT_EQ(index.size(), 1);
    EXPECT_EQ(index[0].toObject().size(), 7);
}

TEST_F(ProjectCacheTest, SavingAFolderAgainReplacesItsProjectAndMovesItToTheTop)
{
    cache.save(house);
    cache.save(projectOf(FileUrl("/Shoots/Flat"), someDay + std::chrono::seconds(1)));
    const CachedProject later = projectOf(FileUrl("/Shoots/House/."), someDay + std::chrono::seconds(2));
    cache.save(later);
    ASSERT_THAT(cache.projects(), SizeIs(2)) << "one folder, one project";
    EXPECT_EQ(cache.projects().front(), later.summary);
    cache.flush();
    EXPECT_EQ(stored(), cache.projects());
}

TEST_F(ProjectCacheTest, TheThirteenthProjectPushesTheOldestOutOfTheIndexAndItsFileStays)
{
    for (int i = 0; i < 13; ++i) {
        cache.save(projectOf(FileUrl("/Shoots/" + std::to_string(i)), someDay + std::chrono::seconds(i)));
    }
    EXPECT_THAT(cache.projects(), SizeIs(12));
    EXPECT_EQ(cache.projects().back().name, u"1"_s);
    cache.flush();
    EXPECT_EQ(stored(), cache.projects());
    EXPECT_TRUE(fs::exists(fileOf(projectOf(FileUrl("/Shoots/0")))));
    EXPECT_TRUE(cache.open(projectID(FileUrl("/Shoots/0"))));
}

TEST_F(ProjectCacheTest, AClockThatJumpsBackNeverPushesOutTheProjectThatIsSaved)
{
    for (int i = 0; i < 12; ++i) {
        cache.save(projectOf(FileUrl("/Shoots/" + std::to_string(i)), someDay + std::chrono::seconds(i)));
    }
    const CachedProject early = projectOf(FileUrl("/Shoots/Early"), someDay - std::chrono::years(30));
    cache.save(early);
    EXPECT_THAT(cache.projects(), SizeIs(12));
    EXPECT_EQ(cache.projects().back(), early.summary) << "the order goes by the dates";
    cache.flush();
    EXPECT_EQ(stored(), cache.projects());
    EXPECT_EQ(cache.open(early.summary.id), early);
}

TEST_F(ProjectCacheTest, ARenameKeepsTheDateAndThereforeTheOrder)
{
    cache.save(house);
    cache.save(projectOf(FileUrl("/Shoots/Flat"), someDay + std::chrono::seconds(1)));
    EXPECT_THAT(namesOf(cache.rename(house.summary.id, u"The Glass House"_s)),
                ElementsAre(u"Flat"_s, u"The Glass House"_s));
    CachedProject renamed = house;
    renamed.summary.name = u"The Glass House"_s;
    EXPECT_EQ(cache.open(house.summary.id), renamed);
    EXPECT_EQ(stored(), cache.projects());
}

TEST_F(ProjectCacheTest, ARenameOfAProjectWhoseFileIsGoneChangesTheIndexAlone)
{
    cache.save(house);
    cache.flush();
    fs::remove(fileOf(house));
    EXPECT_THAT(namesOf(cache.rename(house.summary.id, u"Gone"_s)), ElementsAre(u"Gone"_s));
    EXPECT_FALSE(fs::exists(fileOf(house)));
    EXPECT_THAT(namesOf(cache.rename(u"abc"_s, u"Nobody"_s)), ElementsAre(u"Gone"_s));
    EXPECT_EQ(stored(), cache.projects());
}

TEST_F(ProjectCacheTest, ADeletedProjectIsGoneFromTheIndexAndTheFolder)
{
    cache.save(house);
    EXPECT_THAT(cache.remove(house.summary.id), IsEmpty());
    EXPECT_FALSE(fs::exists(fileOf(house)));
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(cache.open(house.summary.id), std::nullopt);
}

TEST_F(ProjectCacheTest, ACorruptIndexYieldsAnEmptyListAndTheNextSaveANewOne)
{
    for (const char *text : {"", "not json", "{}", "[{}]", "[1]", "[{\"id\":\"1\"}]", "null"}) {
        (void)folder.write("index.json", text);
        EXPECT_THAT(ProjectCache(folder.path()).projects(), IsEmpty()) << text;
    }
    EXPECT_THAT(cache.save(house), ElementsAre(house.summary));
    cache.flush();
    EXPECT_THAT(stored(), ElementsAre(house.summary));
}

TEST_F(ProjectCacheTest, FoldersOfAnyNameComeBackTheSame)
{
    for (const char *path : {"/Shoots/..", "/Shoots/ends in a blank ", "/Shoots/A&B", "/Shoots/line\nbreak",
                             "/Shoots/bad\xff\xfe 100%41", "/Shoots/\"quoted\" \\ back", "/Shoots/\xF0\x9F\x8F\xA0"}) {
        const CachedProject odd = projectOf(FileUrl(path));
        cache.save(odd);
        const auto reopened = cache.open(odd.summary.id);
        ASSERT_TRUE(reopened) << path;
        EXPECT_EQ(*reopened, odd);
    }
    EXPECT_EQ(stored(), cache.projects());
    EXPECT_THAT(stored(), SizeIs(7));
}

TEST_F(ProjectCacheTest, AnIdThatLeadsElsewhereOpensAndDeletesNothing)
{
    ProjectCache inner(folder / "inner");
    for (const QString &id : {u"../outside"_s, QString(), u"ABC"_s, u"11112222333344445"_s, u"a/b"_s, u"a:"_s, u"a`"_s,
                              u"g"_s, u"index2"_s}) {
        const auto file = folder.write("inner/" + id.toStdString() + ".json", encodeProject(house).toStdString());
        EXPECT_EQ(inner.open(id), std::nullopt) << file;
        inner.remove(id);
        EXPECT_TRUE(fs::exists(file)) << file;
    }
}

TEST_F(ProjectCacheTest, TheFolderIsMadeWhenItIsNeeded)
{
    ProjectCache fresh(folder / "data/Projects");
    EXPECT_FALSE(fs::exists(folder / "data"));
    fresh.save(house);
    EXPECT_EQ(fresh.open(house.summary.id), house);
}

TEST_F(ProjectCacheTest, TheLatestSavedIsFirstWhateverTheOrderInTheFile)
{
    const CachedProject later = projectOf(FileUrl("/Shoots/Flat"), someDay + std::chrono::seconds(1));
    (void)folder.write("index.json", encodeProjectIndex({house.summary, later.summary}).toStdString());
    EXPECT_THAT(stored(), ElementsAre(later.summary, house.summary));
}

TEST_F(ProjectCacheTest, ProjectsCopiesAndSettingsAreInTheUsersOwnFoldersForSuchThings)
{
    const QByteArray data = qgetenv("XDG_DATA_HOME");
    const QByteArray config = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_DATA_HOME", "/home/ann/data");
    qputenv("XDG_CONFIG_HOME", "/home/ann/config");
    EXPECT_EQ(ProjectCache::defaultFolder(), "/home/ann/data/Larkspan/Projects");
    EXPECT_EQ(CopyLog::defaultFolder(), "/home/ann/data/Larkspan/Copies");
    EXPECT_EQ(CopyJournal::defaultFolder(), "/home/ann/data/Larkspan/Unfinished");
    EXPECT_EQ(SettingsStore::defaultFile(), u"/home/ann/config/Larkspan/settings.ini"_s);
    qputenv("XDG_DATA_HOME", data);
    qputenv("XDG_CONFIG_HOME", config);
}

TEST_F(ProjectCacheTest, AnIdMayHoldEveryHexadecimalDigit)
{
    CachedProject project = house;
    project.summary.id = u"0123456789abcdef"_s;
    cache.save(project);
    EXPECT_EQ(cache.open(project.summary.id), project);
}

TEST_F(ProjectCacheTest, WhatIsNoFileInAFilesPlaceIsNoProject)
{
    ASSERT_EQ(mkfifo(fileOf(house).c_str(), 0600), 0);
    EXPECT_EQ(cache.open(house.summary.id), std::nullopt) << "nor does it wait for a writer";
    fs::create_directory(folder / "index.json");
    EXPECT_THAT(ProjectCache(folder.path()).projects(), IsEmpty());
}

TEST_F(ProjectCacheTest, WhereNothingCanBeWrittenTheListStillShowsWhatWasSaved)
{
    const TempFolder locked;
    fs::permissions(locked.path(), static_cast<fs::perms>(0555));
    const Unprivileged user;
    ProjectCache readOnly(locked / "Projects");
    EXPECT_THAT(readOnly.save(house), ElementsAre(house.summary));
    EXPECT_EQ(readOnly.open(house.summary.id), std::nullopt);
}

TEST_F(ProjectCacheTest, WithoutADataFolderNothingIsKeptAndNothingFails)
{
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    ProjectCache nowhere{fs::path()};
    EXPECT_THAT(nowhere.save(house), IsEmpty());
    EXPECT_EQ(nowhere.open(house.summary.id), std::nullopt);
    EXPECT_THAT(nowhere.rename(house.summary.id, u"x"_s), IsEmpty());
    EXPECT_THAT(nowhere.remove(house.summary.id), IsEmpty());
    fs::current_path(before);
    EXPECT_TRUE(fs::is_empty(folder.path())) << "nor in the working folder";
}

TEST_F(ProjectCacheTest, OfManySavesInARowTheLastOneIsOnTheMediumWhenTheCacheIsGone)
{
    CachedProject last = house;
    {
        ProjectCache busy(folder.path());
        for (int i = 0; i < 200; ++i) {
            last.summary.reviewCount = i;
            last.summary.savedAt = someDay + std::chrono::seconds(i);
            EXPECT_EQ(busy.save(last).front(), last.summary);
        }
    }
    EXPECT_EQ(ProjectFiles(folder.path()).load(last.summary.id), last);
    EXPECT_THAT(stored(), ElementsAre(last.summary));
    for (const auto &entry : fs::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().extension(), ".json") << "no temporary file stays";
    }
}

TEST_F(ProjectCacheTest, OfTwoInstancesThatSaveAtOnceTheLastWinsAndNoFileIsEverTorn)
{
    cache.save(house);
    cache.flush();
    std::atomic<bool> done = false;
    int unreadable = 0;
    std::thread reader([&] {
        const ProjectFiles files(folder.path());
        while (!done) {
            unreadable += files.load(house.summary.id) ? 0 : 1;
            unreadable += files.loadIndex().empty() ? 1 : 0;
        }
    });
    const auto saveOften = [&](const QString &name) {
        ProjectCache instance(folder.path());
        CachedProject project = house;
        project.summary.name = name;
        for (int i = 0; i < 50; ++i) {
            project.clips.resize(static_cast<std::size_t>(1 + i % 7), house.clips.front());
            instance.save(project);
            instance.flush();
        }
    };
    std::thread other(saveOften, u"other"_s);
    saveOften(u"one"_s);
    other.join();
    done = true;
    reader.join();
    EXPECT_EQ(unreadable, 0);
    cache.save(house);
    EXPECT_EQ(cache.open(house.summary.id), house) << "the last one wins";
}

TEST_F(ProjectCacheTest, WhatAnotherInstanceSavedShowsAfterTheNextSave)
{
    ProjectCache other(folder.path());
    other.save(projectOf(FileUrl("/Shoots/Flat"), someDay - std::chrono::seconds(1)));
    other.flush();
    EXPECT_THAT(namesOf(cache.save(house)), ElementsAre(u"House"_s, u"Flat"_s));
}
