#include "core/bins/BinRules.h"
#include "core/bins/RoomLabel.h"
#include "core/engine/ClipPipeline.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Pointee;
using testing::SizeIs;

namespace fs = std::filesystem;

TEST_F(SortEngineTest, StartsEmpty)
{
    const SortEngine engine(seams());
    EXPECT_EQ(engine.stage(), SortEngine::Stage{});
    EXPECT_EQ(engine.progress(), 0.0);
    EXPECT_EQ(engine.folderName(), QString());
    EXPECT_FALSE(engine.hasFolder());
}

TEST_F(SortEngineTest, AValueIsAnnouncedWhenItChangesAndNotWhenItIsSetAgain)
{
    SortEngine engine(seams());
    // How often it was announced by the time it had been set once, and twice.
    const auto announced = [&engine](auto signal, const std::function<void()> &set) {
        int count = 0;
        const auto connection = QObject::connect(&engine, signal, [&count] { ++count; });
        set();
        const int once = count;
        set();
        QObject::disconnect(connection);
        return std::pair(once, count);
    };
    const std::pair onlyOnce(1, 1);
    const auto clip = std::make_shared<MediaClip>(FileUrl("/a.mov"));
    EXPECT_EQ(announced(&SortEngine::selectedBinChanged, [&] { engine.setSelectedBin(u"Pool"_s); }), onlyOnce);
    EXPECT_EQ(announced(&SortEngine::previewClipChanged, [&] { engine.setPreviewClip(clip); }), onlyOnce);
    EXPECT_EQ(announced(&SortEngine::targetChanged, [&] { engine.setTarget(NLE::premiere); }), onlyOnce);
    EXPECT_EQ(announced(&SortEngine::canExportChanged, [&] { engine.setTarget(NLE::resolve); }), onlyOnce);
    EXPECT_EQ(announced(&SortEngine::modelTierChanged, [&] { engine.setModelTier(ModelTier::cloud); }), onlyOnce);
    EXPECT_EQ(announced(&SortEngine::optionsChanged, [&] { engine.setOptions({.splitRepeatedRooms = false}); }),
              onlyOnce);
    EXPECT_EQ(announced(&SortEngine::importRootChanged, [&] { engine.setImportRoot(FileUrl("/Shoots")); }), onlyOnce);
}

TEST_F(SortEngineTest, SortsAFolderIntoItsBins)
{
    makeClips({"kitchen 2", "pool 3", "kitchen 1"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    EXPECT_EQ(engine.stage().kind, StageKind::working);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s, u"kitchen 2"_s, u"pool 3"_s));
    EXPECT_THAT(engine.binCounts(), ElementsAre(BinCount{u"Kitchen"_s, 2}, BinCount{u"Pool"_s, 1}));
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    EXPECT_EQ(engine.progress(), 1.0);
    EXPECT_EQ(engine.displayName(), shoot.lastPathComponent());
    EXPECT_EQ(engine.currentProjectID(), projectID(shoot));
    EXPECT_EQ(engine.exportSummary(), shoot.lastPathComponent() + u".fcpxml · 2 bins · 3 clips"_s);
    EXPECT_EQ(engine.verticalCount(), 0);
    engine.clips().front()->displaySize = {1080, 1920};
    EXPECT_EQ(engine.verticalCount(), 1);
    for (const ClipPtr &clip : engine.clips()) {
        EXPECT_FALSE(clip->thumbnail.isNull());
        EXPECT_EQ(clip->confidence, 1.0);
        EXPECT_THAT(clip->rawIdentifiers, SizeIs(1));
    }
    const auto project = saved();
    ASSERT_TRUE(project);
    EXPECT_EQ(project->summary.clipCount, 3);
    EXPECT_EQ(project->summary.binCount, 2);
    EXPECT_THAT(project->clips, SizeIs(3));
}

TEST_F(SortEngineTest, AClipWhoseDateWasNeverReadSortsFirst)
{
    makeClips({"a 1", "b 2"});
    auto parts = seams();
    parts.probeClip = [](const FileUrl &url) {
        return url.baseName() == u"b 2"_s ? std::make_shared<MediaClip>(url) : probe(url);
    };
    SortEngine engine(parts);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"b 2"_s, u"a 1"_s));
}

TEST_F(SortEngineTest, AFolderWithoutVideoFilesIsSaidToBeEmptyByName)
{
    (void)folder.write("notes.txt");
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_EQ(engine.stage().text, shoot.lastPathComponent());
    EXPECT_THAT(cache.projects(), IsEmpty());
}

TEST_F(SortEngineTest, AnEmptyFolderLoadsNoModels)
{
    std::atomic<int> loaded = 0;
    auto parts = seams();
    parts.makeLocalClassifier = [&] {
        ++loaded;
        return std::make_shared<NamedFrames>();
    };
    {
        SortEngine engine(parts);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
        drain();
    }
    EXPECT_EQ(loaded, 0);
}

TEST_F(SortEngineTest, AnUnreadableFolderIsSaidToBeEmptyByName)
{
    (void)folder.write("locked/a 1.mov");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "locked", fs::perms::none);
    SortEngine engine(seams());
    {
        const Unprivileged user;
        engine.sortFolder(FileUrl(folder / "locked"));
        ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    }
    EXPECT_EQ(engine.stage().text, u"locked"_s);
    fs::permissions(folder / "locked", fs::perms::all);
}

TEST_F(SortEngineTest, AClipWithoutFramesIsUnsortedUnderReviewWhateverTheOptionsSay)
{
    makeClips({"dark 1", "pool 2"});
    SortEngine engine(seams());
    engine.setOptions({.sendUnsureToReview = false});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const MediaClip &dark = *engine.clips().front();
    EXPECT_EQ(dark.primaryBin, u"Unsorted"_s);
    EXPECT_EQ(dark.reviewReason, u"couldn't read any frames"_s);
    EXPECT_TRUE(engine.isUnderReview(dark));
    EXPECT_EQ(engine.selectedBin(), reviewKey());
    EXPECT_THAT(namesOf(engine.clipsInBin(reviewKey())), ElementsAre(u"dark 1"_s));
}

TEST_F(SortEngineTest, AClipCarriesAllThatWasSeenAndDecided)
{
    class TwoRooms : public FrameClassifier
    {
    public:
        FrameAnalysis analyze(std::span<const QImage>) const override { return seen; }

        const FrameAnalysis seen{.scores = {{u"Dining Room"_s, 1.2}, {u"Kitchen"_s, 0.9}},
                                 .raw = {{u"dining_table"_s, 0.8}, {u"oven"_s, 0.4}},
                                 .featurePrint = std::make_shared<FeaturePrint>(std::vector<float>{1.0f}),
                                 .humanFraction = 0.01};
    };
    const TwoRooms rooms;
    const ClipPtr clip = processClip(FileUrl("/dining 1.mov"), rooms, {}, seams(), {});
    const Classification decision = classification(rooms.seen, *clip, {});
    EXPECT_EQ(clip->primaryBin, u"Dining Room"_s);
    EXPECT_EQ(clip->confidence, decision.score);
    EXPECT_THAT(clip->extraBins, ElementsAre(u"Kitchen"_s));
    EXPECT_EQ(clip->runnerUp, u"Kitchen"_s);
    EXPECT_EQ(clip->runnerUpScore, decision.runnerUpScore);
    EXPECT_GT(clip->runnerUpScore, 0.0);
    EXPECT_EQ(clip->rawIdentifiers, rooms.seen.raw);
    EXPECT_EQ(clip->featurePrint, rooms.seen.featurePrint);
    EXPECT_EQ(clip->humanFraction, 0.01);
    EXPECT_FALSE(clip->thumbnail.isNull());
}

TEST_F(SortEngineTest, FourFramesOf448PixelsAreAskedFor)
{
    makeClips({"pool 1"});
    std::pair<int, double> asked;
    auto parts = seams();
    parts.sampleFrames = [&](const MediaClip &clip, int count, double size) {
        asked = {count, size};
        return sample(clip);
    };
    SortEngine engine(parts);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(asked, std::pair(4, 448.0));
}

TEST_F(SortEngineTest, OptionsChangedDuringASortDoNotReachIt)
{
    makeClips({"unsorted 1", "unsorted 2", "unsorted 3"});
    Gate gate;
    auto parts = seams();
    parts.probeClip = [&](const FileUrl &url) {
        if (url.baseName() == u"unsorted 1"_s) {
            gate.pass();
        }
        return probe(url);
    };
    SortEngine engine(parts, 2);
    engine.sortFolder(shoot);
    gate.awaitArrival();
    engine.setOptions({.sendUnsureToReview = false});
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    for (const ClipPtr &clip : engine.clips()) {
        EXPECT_TRUE(clip->needsReview);
    }
}

TEST_F(SortEngineTest, RepeatedRoomsAreToldApartByTheirPrintsIfTheOptionSaysSo)
{
    // Each frame's print is far from every other's.
    class OddPrints : public NamedFrames
    {
    public:
        FrameAnalysis analyze(std::span<const QImage> frames) const override
        {
            FrameAnalysis analysis = NamedFrames::analyze(frames);
            analysis.featurePrint =
                std::make_shared<FeaturePrint>(std::vector<float>{static_cast<float>(100 * m_count++)});
            return analysis;
        }

    private:
        mutable std::atomic<int> m_count = 0;
    };
    makeClips({"kitchen 1", "kitchen 5"});
    auto parts = seams();
    parts.makeLocalClassifier = [] { return std::make_shared<OddPrints>(); };
    SortEngine engine(parts);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(engine.clips(), ElementsAre(Pointee(Field(&MediaClip::primaryBin, u"Kitchen 1"_s)),
                                            Pointee(Field(&MediaClip::primaryBin, u"Kitchen 2"_s))));
    engine.setOptions({.splitRepeatedRooms = false});
    engine.sortAgain();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(engine.clips(), Each(Pointee(Field(&MediaClip::primaryBin, u"Kitchen"_s))));
}

TEST_F(SortEngineTest, SortAgainKeepsTheNameOfARenamedProject)
{
    makeClips({"pool 1"});
    cache.save({.summary = {.id = projectID(shoot), .name = u"The Glass House"_s, .folderPath = shoot}});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    EXPECT_EQ(engine.projectName(), u"The Glass House"_s);
    EXPECT_EQ(engine.displayName(), u"The Glass House"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(saved()->summary.name, u"The Glass House"_s);
    engine.sortFolder(shoot);
    EXPECT_EQ(engine.projectName(), u"The Glass House"_s);
}

TEST_F(SortEngineTest, AProjectNamedLikeItsFolderHasNoNameOfItsOwn)
{
    cache.save({.summary = {.id = projectID(shoot), .name = shoot.lastPathComponent(), .folderPath = shoot}});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    EXPECT_EQ(engine.projectName(), QString());
}

TEST_F(SortEngineTest, RecentsHoldFiveFoldersTheLatestFirstWithoutDoubles)
{
    SortEngine engine(seams());
    for (const char *name : {"/a", "/b", "/c", "/b", "/d", "/e", "/f"}) {
        engine.sortFolder(FileUrl(name));
    }
    EXPECT_THAT(engine.recents(),
                ElementsAre(SortEngine::Recent{u"f"_s, FileUrl("/f")}, SortEngine::Recent{u"e"_s, FileUrl("/e")},
                            SortEngine::Recent{u"d"_s, FileUrl("/d")}, SortEngine::Recent{u"b"_s, FileUrl("/b")},
                            SortEngine::Recent{u"c"_s, FileUrl("/c")}));
}

TEST_F(SortEngineTest, AFolderThatIsSortedAgainIsTheLatestRecentAndNotThereTwice)
{
    SortEngine engine(seams());
    for (const char *name : {"/a", "/b", "/c", "/b"}) {
        engine.sortFolder(FileUrl(name));
    }
    EXPECT_THAT(engine.recents(),
                ElementsAre(SortEngine::Recent{u"b"_s, FileUrl("/b")}, SortEngine::Recent{u"c"_s, FileUrl("/c")},
                            SortEngine::Recent{u"a"_s, FileUrl("/a")}));
}

TEST_F(SortEngineTest, AFolderThatIsSortedAndACardsCopyAreAnnouncedAsRecent)
{
    (void)folder.write("card/pool 1.mov");
    fs::create_directory(folder / "Shoots");
    SortEngine engine(seams());
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    std::vector<QString> latest;
    QObject::connect(&engine, &SortEngine::recentsChanged, [&] { latest.push_back(engine.recents().front().name); });
    engine.sortFolder(FileUrl(folder / "card"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    EXPECT_THAT(latest, ElementsAre(u"card"_s, engine.folderName()));
}

TEST_F(SortEngineTest, ChooseFolderAsksInItsWordsAndSortsWhatWasChosen)
{
    SortEngine engine(seams());
    engine.chooseFolder();
    EXPECT_EQ(engine.stage().kind, StageKind::empty) << "nothing chosen, nothing done";
    ASSERT_THAT(panels, SizeIs(1));
    EXPECT_EQ(panels[0].prompt, u"Sort This Folder"_s);
    EXPECT_EQ(panels[0].message, u"Choose the folder holding this shoot's raw clips."_s);
    folderToChoose = shoot;
    engine.chooseFolder();
    EXPECT_EQ(engine.folder(), shoot);
}
