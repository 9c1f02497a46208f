// The power goes while the project cache or the settings are written, or behind a folder's new name. Either the old
// state or the new one must then be there, whole; what was said to be on the medium is there for good.
#include <gmock/gmock.h>

#include "core/copies/CardFolder.h"
#include "core/projects/ProjectCache.h"
#include "core/settings/SettingsStore.h"
#include "tests/power/PowerCuts.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AnyOf;
using testing::Contains;
using testing::Gt;

namespace fs = std::filesystem;

namespace {

constexpr const char *cacheFolder = "share/Larkspan/Projects";
constexpr const char *settingsFile = "config/Larkspan/settings.ini";

CachedProject sortedShoot(const FileUrl &folder, int clips, int day)
{
    using std::chrono::sys_days;
    CachedProject project{
        .summary = {.id = projectID(folder),
                    .name = folder.lastPathComponent(),
                    .folderPath = folder,
                    .clipCount = clips,
                    .binCount = 1,
                    .savedAt = sys_days(std::chrono::year{2026} / std::chrono::May / 4) + std::chrono::days(day)}};
    for (int i = 0; i < clips; ++i) {
        project.clips.push_back({.path = folder.appending(u"C%1.MOV"_s.arg(i)), .primaryBin = u"Kitchen"_s});
    }
    return project;
}

// A cache as the next start of the program finds it: the list, and each project of it that can be opened.
struct CacheState
{
    std::vector<ProjectSummary> projects;
    std::map<QString, CachedProject> opened;

    static CacheState in(const fs::path &disk)
    {
        ProjectCache cache(disk / cacheFolder);
        CacheState state{.projects = cache.projects(), .opened = {}};
        for (const ProjectSummary &project : state.projects) {
            if (auto opened = cache.open(project.id)) {
                state.opened.emplace(project.id, std::move(*opened));
            }
        }
        return state;
    }
};

CacheState cacheOn(const DiskContent &left)
{
    const PowerCutDisk disk(left);
    return CacheState::in(disk.path());
}

std::map<QString, QString> settingsOn(const DiskContent &left)
{
    const PowerCutDisk disk(left);
    const SettingsStore store(QString::fromStdString(disk.path() / settingsFile));
    std::map<QString, QString> settings;
    for (const QString &key : {u"modelTier"_s, u"lkImportRootPath"_s, u"defaultNLE"_s}) {
        if (const auto value = store.string(key)) {
            settings.emplace(key, *value);
        }
    }
    return settings;
}

class StatePowerCut : public testing::Test
{
protected:
    void SetUp() override { REQUIRE_POWER_CUT_DISK(); }

    // Does one thing after the other and waits each time until it is on the medium. Whatever the power leaves must be
    // the state before or after the one that it interrupted: of the list, and of each project.
    static long cutInto(const DiskContent &before, const std::vector<std::function<void(ProjectCache &)>> &steps)
    {
        const auto reached = statesOf(before, steps);
        std::size_t done = 0; // steps that were through before the cut
        return cutPowerAtCalls({
            .before = before,
            .act =
                [&](const fs::path &disk, const std::function<bool()> &isCut) {
                    done = 0;
                    ProjectCache cache(disk / cacheFolder);
                    for (const auto &step : steps) {
                        step(cache);
                        cache.flush();
                        done += isCut() ? 0 : 1;
                    }
                },
            .check =
                [&](const DiskContent &left) {
                    const CacheState state = cacheOn(left);
                    const CacheState &older = reached[done];
                    const CacheState &newer = reached[std::min(done + 1, steps.size())];
                    EXPECT_THAT(state.projects, AnyOf(older.projects, newer.projects)) << done;
                    for (const ProjectSummary &project : state.projects) {
                        ASSERT_TRUE(state.opened.contains(project.id)) << project.name.toStdString();
                        std::vector<CachedProject> allowed;
                        for (const CacheState &one : {older, newer}) {
                            if (one.opened.contains(project.id)) {
                                allowed.push_back(one.opened.at(project.id));
                            }
                        }
                        EXPECT_THAT(allowed, Contains(state.opened.at(project.id)));
                    }
                },
        });
    }

    // The states before the first step and after each.
    static std::vector<CacheState> statesOf(const DiskContent &before,
                                            const std::vector<std::function<void(ProjectCache &)>> &steps)
    {
        const PowerCutDisk disk(before);
        std::vector<CacheState> states{CacheState::in(disk.path())};
        for (const auto &step : steps) {
            {
                ProjectCache cache(disk.path() / cacheFolder);
                step(cache);
            }
            states.push_back(CacheState::in(disk.path()));
        }
        return states;
    }

    static DiskContent diskWith(const std::vector<CachedProject> &projects)
    {
        PowerCutDisk disk;
        {
            ProjectCache cache(disk.path() / cacheFolder);
            for (const CachedProject &project : projects) {
                cache.save(project);
            }
        }
        disk.unmount();
        return disk.left(Survival::everything);
    }

    const CachedProject house = sortedShoot(FileUrl("/Shoots/House"), 3, 0);
    const CachedProject houseLater = sortedShoot(FileUrl("/Shoots/House"), 40, 1);
    const CachedProject barn = sortedShoot(FileUrl("/Shoots/Barn"), 5, 2);
    const CachedProject mill = sortedShoot(FileUrl("/Shoots/Mill"), 2, 3);
};

} // namespace

TEST_F(StatePowerCut, TheFirstProjectsAreThereOnceTheyAreSaidToBe)
{
    EXPECT_THAT(
        cutInto({}, {[&](ProjectCache &cache) { cache.save(house); }, [&](ProjectCache &cache) { cache.save(barn); },
                     [&](ProjectCache &cache) { cache.save(houseLater); }}),
        Gt(30));
}

TEST_F(StatePowerCut, RenamingAndRemovingLeaveTheOldStateOrTheNewOne)
{
    EXPECT_THAT(cutInto(diskWith({house, barn, mill}),
                        {[&](ProjectCache &cache) { cache.rename(house.summary.id, u"Villa"_s); },
                         [&](ProjectCache &cache) { cache.remove(barn.summary.id); },
                         [&](ProjectCache &cache) { cache.remove(mill.summary.id); }}),
                Gt(30));
}

TEST_F(StatePowerCut, TheSettingsAreTheOldOnesOrTheNewOnesWhole)
{
    const std::map<QString, QString> older{{u"modelTier"_s, u"local"_s}, {u"lkImportRootPath"_s, u"/Shoots"_s}};
    const std::map<QString, QString> newer{{u"modelTier"_s, u"cloud"_s},
                                           {u"lkImportRootPath"_s, u"/Volumes/"_s + QString(5'000, u'x')},
                                           {u"defaultNLE"_s, u"resolve"_s}};
    // The lock on the settings complains that it can't be removed.
    const auto complaints = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto write = [](const fs::path &disk, const std::map<QString, QString> &settings) {
        SettingsStore store(QString::fromStdString(disk / settingsFile));
        for (const auto &[key, value] : settings) {
            store.setString(key, value);
        }
    };
    for (const bool isFirstWrite : {true, false}) {
        SCOPED_TRACE(isFirstWrite);
        DiskContent before;
        if (!isFirstWrite) {
            PowerCutDisk disk;
            write(disk.path(), older);
            disk.unmount();
            before = disk.left(Survival::everything);
        }
        const auto old = isFirstWrite ? std::map<QString, QString>() : older;
        EXPECT_THAT(cutPowerAtCalls({
                        .before = before,
                        .act = [&](const fs::path &disk, const auto &) { write(disk, newer); },
                        .check = [&](const DiskContent &left) { EXPECT_THAT(settingsOn(left), AnyOf(old, newer)); },
                    }),
                    Gt(10));
    }
    qInstallMessageHandler(complaints);
}

TEST_F(StatePowerCut, AFolderIsMarkedForGoodAndReplacesNothingWhateverTheFileSystemPromises)
{
    for (const auto claims : {PowerCutDisk::Claims::rename, PowerCutDisk::Claims::neither}) {
        const DiskContent before{{"Shoots", std::nullopt},
                                 {"Shoots/CARD", std::nullopt},
                                 {"Shoots/CARD (unfinished)", std::nullopt}, // empty, so that a rename could replace it
                                 {"Shoots/CARD/a.mov", "film"}};
        PowerCutDisk disk(before, claims);
        const fs::path shoots = disk.path() / "Shoots";
        EXPECT_EQ(markUnfinished(FileUrl(shoots / "CARD")), FileUrl(shoots / "CARD (unfinished) (2)"));
        disk.unmount();
        EXPECT_EQ(disk.left(Survival::nothing), (DiskContent{{"Shoots", std::nullopt},
                                                             {"Shoots/CARD (unfinished)", std::nullopt},
                                                             {"Shoots/CARD (unfinished) (2)", std::nullopt},
                                                             {"Shoots/CARD (unfinished) (2)/a.mov", "film"}}));
    }
}
