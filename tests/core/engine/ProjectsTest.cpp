// Sorted shoots that are opened again.
#include "core/bins/RoomLabel.h"
#include "tests/core/engine/ProjectsFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

TEST_F(ProjectsTest, AProjectIsOpenedAsItWasSavedWithoutSorting)
{
    makeClips({"kitchen 1", "pool 2", "pool 3", "garage 4", "office 5"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
        engine.toggleExtraBin(engine.clips().front()->id, u"Garage"_s);
    }
    auto parts = seams();
    parts.probeClip = [](const FileUrl &) -> ClipPtr {
        ADD_FAILURE() << "nothing is probed";
        return nullptr;
    };
    std::pair<int, double> asked;
    std::mutex mutex;
    parts.sampleFrames = [&](const MediaClip &clip, int count, double size) {
        const std::lock_guard lock(mutex);
        asked = {count, size};
        return sample(clip);
    };
    SortEngine engine(parts);
    ASSERT_THAT(engine.projects(), SizeIs(1));
    engine.openProject(id);
    EXPECT_EQ(engine.stage(), (SortEngine::Stage{.kind = StageKind::results}));
    EXPECT_EQ(engine.folder(), shoot);
    EXPECT_EQ(engine.currentProjectID(), id);
    EXPECT_EQ(engine.displayName(), shoot.lastPathComponent());
    EXPECT_THAT(namesOf(engine.clips()),
                ElementsAre(u"kitchen 1"_s, u"pool 2"_s, u"pool 3"_s, u"garage 4"_s, u"office 5"_s));
    EXPECT_THAT(engine.clips().front()->bins(), ElementsAre(u"Kitchen"_s, u"Garage"_s));
    EXPECT_EQ(engine.selectedBin(), u"Garage"_s);
    EXPECT_EQ(engine.progress(), 1.0);
    EXPECT_EQ(engine.total(), 5);
    EXPECT_THAT(engine.recents(), IsEmpty()) << "no folder was opened for sorting";
    EXPECT_TRUE(waitUntil([&] { return hasAllThumbnails(engine); }));
    EXPECT_EQ(asked, std::pair(1, 448.0));
}

TEST_F(ProjectsTest, WhatWasUnderReviewIsUnderReviewAgainAndWhatWasConfirmedIsNot)
{
    makeClips({"dark 1", "dark 2", "pool 3"});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.confirm(engine.clips().front()->id);
    engine.setPreviewClip(engine.clips().front());
    engine.openProject(id);
    EXPECT_THAT(engine.confirmedReview(), IsEmpty());
    EXPECT_EQ(engine.previewClip(), nullptr);
    EXPECT_EQ(engine.selectedBin(), reviewKey());
    EXPECT_THAT(namesOf(engine.clipsInBin(reviewKey())), ElementsAre(u"dark 2"_s));
    EXPECT_EQ(engine.clips()[1]->reviewReason, u"couldn't read any frames"_s);
}

TEST_F(ProjectsTest, AProjectWhoseFootageIsGoneOpensWithAllItsBinsAndNoThumbnails)
{
    makeClips({"kitchen 1", "pool 2"});
    SortEngine engine(seams());
    sortShoot(engine);
    fs::remove_all(shoot.path());
    auto parts = seams();
    std::atomic<int> sampled = 0;
    parts.sampleFrames = [&](const MediaClip &clip, int, double) {
        ++sampled;
        return fs::exists(clip.url.path()) ? sample(clip) : Frames();
    };
    SortEngine later(parts);
    later.openProject(id);
    EXPECT_EQ(later.stage().kind, StageKind::results);
    EXPECT_THAT(later.usedBins(), ElementsAre(u"Kitchen"_s, u"Pool"_s));
    EXPECT_TRUE(waitUntil([&] { return sampled == 2; }));
    drain();
    EXPECT_TRUE(later.clips().front()->thumbnail.isNull());
}

TEST_F(ProjectsTest, AProjectFileWithAMissingKeyFailsToOpenAndLeavesTheListAndNothingElseChanges)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    cache.save({.summary = {.id = u"abc"_s, .name = u"Other"_s, .folderPath = FileUrl("/other")}});
    cache.flush();
    (void)cacheFolder.write("abc.json", "{\"id\":\"abc\"}");
    int changes = 0;
    QObject::connect(&engine, &SortEngine::projectsChanged, [&] { ++changes; });
    engine.openProject(u"abc"_s);
    EXPECT_THAT(engine.projects(), SizeIs(1));
    EXPECT_EQ(engine.projects().front().id, id);
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(fs::exists(cacheFolder / "abc.json"));
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_THAT(engine.clips(), SizeIs(1));
    EXPECT_EQ(engine.currentProjectID(), id);
}

TEST_F(ProjectsTest, OpeningAProjectDuringASortLetsNothingOfTheSortLand)
{
    makeClips({"pool 1", "pool 2"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
    }
    (void)folder.write("second/kitchen 1.mov");
    Gate gate;
    std::atomic<bool> ended = false;
    auto parts = seams();
    parts.makeLocalClassifier = [&ended] {
        return std::shared_ptr<const FrameClassifier>(new NamedFrames, [&ended](const FrameClassifier *classifier) {
            delete classifier;
            ended = true; // behind all that the sort hands over
        });
    };
    parts.probeClip = [&gate](const FileUrl &url) {
        gate.pass();
        return probe(url);
    };
    SortEngine engine(parts);
    engine.sortFolder(FileUrl(folder / "second"));
    gate.awaitArrival();
    engine.openProject(id);
    gate.open();
    ASSERT_TRUE(waitUntil([&] { return ended.load(); }));
    drain();
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"pool 1"_s, u"pool 2"_s));
    EXPECT_EQ(engine.folder(), shoot);
    EXPECT_EQ(engine.stage().kind, StageKind::results);
}

TEST_F(ProjectsTest, AnEngineWithoutACacheOpensRenamesAndDeletesNothing)
{
    auto parts = seams();
    parts.projects = nullptr;
    makeClips({"pool 1"});
    SortEngine engine(parts);
    sortShoot(engine);
    engine.openProject(id);
    engine.renameProject(id, u"x"_s);
    engine.deleteProject(id);
    EXPECT_EQ(engine.currentProjectID(), id);
    EXPECT_THAT(engine.projects(), IsEmpty());
}

TEST_F(ProjectsTest, OpeningAProjectForgetsThePreviewAndTheCardAndOrdersTheClipsByDate)
{
    (void)folder.write("card/pool 7.mov", "film");
    fs::create_directory(folder / "Shoots");
    auto parts = seams();
    parts.copyFiles = [](const auto &urls, const FileUrl &destination, const auto &...) {
        fs::create_directories(destination.path());
        fs::copy_file(urls.front().path(), destination.path() / "pool 7.mov");
        return std::vector<CopyResult>();
    };
    CachedProject stored{.summary = {.id = u"abc"_s, .name = u"Other"_s, .folderPath = FileUrl("/other")}};
    for (const char *name : {"/other/pool 3.mov", "/other/kitchen 1.mov", "/other/garage 2.mov"}) {
        stored.clips.push_back(ClipRecord::fromClip(*probe(FileUrl(name))));
    }
    cache.save(stored);
    SortEngine engine(parts);
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.setPreviewClip(engine.clips().front());

    engine.openProject(u"abc"_s);
    EXPECT_FALSE(engine.isRemovableImport());
    EXPECT_EQ(engine.importVolumeName(), std::nullopt);
    EXPECT_FALSE(engine.hasPreview());
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s, u"garage 2"_s, u"pool 3"_s));
}

TEST_F(ProjectsTest, AResetForgetsThePreviewAndTheName)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.renameProject(id, u"House"_s);
    engine.setPreviewClip(engine.clips().front());
    engine.reset();
    EXPECT_FALSE(engine.hasPreview());
    EXPECT_EQ(engine.projectName(), QString());
    EXPECT_EQ(engine.displayName(), QString());
}
