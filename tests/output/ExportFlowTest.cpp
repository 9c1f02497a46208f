// The export as the editor starts it, with the real importer and the real event.
#include <gmock/gmock.h>

#include "output/FCPXMLWriter.h"
#include "output/MediaImporter.h"
#include "output/PlacesInBin.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

// Gives an environment variable another value for its lifetime.
class Environment
{
public:
    Environment(const char *name, const fs::path &value) : m_name(name), m_old(qgetenv(name))
    {
        qputenv(name, QByteArray::fromStdString(value.native()));
    }
    ~Environment() { m_old.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_old); }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

private:
    const char *const m_name;
    const QByteArray m_old;
};

} // namespace

// A home, a Shoots folder and a shoot named "A&B" of two kitchens and a pool.
class ExportFlowTest : public SortEngineTest
{
protected:
    ExportFlowTest()
    {
        for (const char *name : {"kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"}) {
            (void)folder.write(fs::path("A&B") / name, name);
        }
        fs::create_directories(shoots);
        (void)folder.write("home/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
    }

    SortSeams exportingSeams()
    {
        auto parts = seams();
        parts.organizeByBin = [](const auto &clips, const FileUrl &root, bool deleteSources, const CopyOrder &order) {
            return MediaImporter::organizeByBin(clips, root, deleteSources, order)
                .map_error([](const ImportError &error) { return CopyFailure{error.description()}; });
        };
        parts.placesInBin = placesInBin;
        parts.eventText = [](const std::vector<ClipPtr> &clips, const QString &name) {
            return FCPXMLWriter::event(clips, name);
        };
        return parts;
    }

    void sort(SortEngine &engine) const
    {
        engine.sortFolder(house);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    // Sorts with these options and exports.
    void sortAndExport(SortEngine &engine, const SortOptions &options) const
    {
        engine.setOptions(options);
        sort(engine);
        engine.exportEvent();
        ASSERT_TRUE(reaches(engine, StageKind::done)) << engine.stage().text.toStdString();
    }

    const fs::path housePath = folder / "A&B";
    const FileUrl house{housePath};
    const fs::path shoots = folder / "Shoots";
    const fs::path documents = folder / "home/Papers";
    const Environment home{"HOME", folder / "home"};
    const Environment config{"XDG_CONFIG_HOME", folder / "home/.config"};
};

TEST_F(ExportFlowTest, InPlaceWritesTheEventBesideTheFootageAndTheShootsFolderIsNotUsed)
{
    SortEngine engine(exportingSeams());
    engine.setImportRoot(FileUrl(shoots));
    sortAndExport(engine, {});
    EXPECT_THAT(namesBeneath(housePath), ElementsAre("A&B.fcpxml", "kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"));
    EXPECT_TRUE(fs::is_empty(shoots));
    EXPECT_EQ(engine.clips().front()->destinationURL, std::nullopt);
    EXPECT_EQ(engine.exportSummary(), u"A&B.fcpxml · 2 bins · 3 clips"_s);
}

TEST_F(ExportFlowTest, AFolderNamedWithAnAmpersandNamesTheFileWithItAndOnlyTheTextIsEscaped)
{
    SortEngine engine(exportingSeams());
    sortAndExport(engine, {});
    EXPECT_EQ(engine.stage().event, FileUrl(housePath / "A&B.fcpxml"));
    EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), HasSubstr("A&amp;B"));
    EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), Not(HasSubstr("A&B")));
}

TEST_F(ExportFlowTest, WithoutTheOptionTheEventGoesToTheDocumentsWhichAreMadeIfNeedBe)
{
    SortEngine engine(exportingSeams());
    sortAndExport(engine, {.writeNextToFootage = false});
    EXPECT_EQ(engine.stage().event, FileUrl(documents / "A&B.fcpxml"));
    EXPECT_THAT(namesBeneath(documents), ElementsAre("A&B.fcpxml"));
    EXPECT_THAT(namesBeneath(housePath), SizeIs(3));
}

TEST_F(ExportFlowTest, ACopyPutsTheFootageIntoAFolderForEachBinAndTheEventAtTheirRoot)
{
    SortEngine engine(exportingSeams());
    std::vector<std::pair<int, int>> progress;
    std::vector<StageKind> stages;
    QObject::connect(&engine, &SortEngine::stageChanged, [&] { stages.push_back(engine.stage().kind); });
    engine.setOptions({.fileHandling = FileHandling::copy, .verifyLevel = VerifyLevel::checksum});
    sort(engine);
    QObject::connect(&engine, &SortEngine::progressChanged,
                     [&] { progress.emplace_back(engine.done(), engine.total()); });
    engine.exportEvent();
    EXPECT_EQ(engine.stage(), (SortEngine::Stage{.kind = StageKind::organizing}));
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_THAT(stages, ElementsAre(StageKind::working, StageKind::results, StageKind::organizing, StageKind::done));
    EXPECT_THAT(progress, ElementsAre(std::pair(0, 3), std::pair(1, 3), std::pair(2, 3), std::pair(3, 3)));
    EXPECT_THAT(namesBeneath(housePath),
                ElementsAre("A&B.fcpxml", "Kitchen/kitchen 1.mov", "Kitchen/kitchen 2.mov", "Pool/pool 3.mov",
                            "kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"));
    EXPECT_EQ(engine.clips().front()->destinationURL, FileUrl(housePath / "Kitchen/kitchen 1.mov"));
    EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), HasSubstr("/Kitchen/kitchen%201.mov"));
    EXPECT_THAT(opened, ElementsAre(FileUrl(housePath / "A&B.fcpxml")));
}

TEST_F(ExportFlowTest, ACopyWithAShootsFolderPutsFoldersAndEventThere)
{
    SortEngine engine(exportingSeams());
    engine.setImportRoot(FileUrl(shoots));
    sortAndExport(engine, {.fileHandling = FileHandling::copy});
    EXPECT_THAT(namesBeneath(shoots),
                ElementsAre("A&B.fcpxml", "Kitchen/kitchen 1.mov", "Kitchen/kitchen 2.mov", "Pool/pool 3.mov"));
    EXPECT_THAT(namesBeneath(housePath), ElementsAre("kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"));
}

TEST_F(ExportFlowTest, ACopyWithoutTheOptionPutsTheFoldersAtTheRootAndTheEventInTheDocuments)
{
    SortEngine engine(exportingSeams());
    sortAndExport(engine, {.writeNextToFootage = false, .fileHandling = FileHandling::copy});
    EXPECT_EQ(engine.stage().event, FileUrl(documents / "A&B.fcpxml"));
    EXPECT_TRUE(fs::exists(housePath / "Pool/pool 3.mov"));
    EXPECT_FALSE(fs::exists(housePath / "A&B.fcpxml"));
}

TEST_F(ExportFlowTest, AMoveLeavesNoSource)
{
    SortEngine engine(exportingSeams());
    sortAndExport(engine, {.fileHandling = FileHandling::move});
    EXPECT_THAT(namesBeneath(housePath),
                ElementsAre("A&B.fcpxml", "Kitchen/kitchen 1.mov", "Kitchen/kitchen 2.mov", "Pool/pool 3.mov"));
    EXPECT_EQ(contentOf(housePath / "Pool/pool 3.mov"), "pool 3.mov");
}

TEST_F(ExportFlowTest, AKitchenThreeAloneIsKitchenInTheKeywordTheFolderAndTheProject)
{
    SortEngine engine(exportingSeams());
    engine.setOptions({.fileHandling = FileHandling::copy});
    sort(engine);
    for (const ClipPtr &clip : engine.clipsInBin(u"Kitchen"_s)) {
        engine.reassign(clip->id, u"Kitchen 3"_s);
    }
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), HasSubstr("\"Kitchen\""));
    EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), Not(HasSubstr("Kitchen 3")));
    EXPECT_TRUE(fs::exists(housePath / "Kitchen/kitchen 1.mov"));
    EXPECT_EQ(cache.open(projectID(house))->clips.front().primaryBin, u"Kitchen"_s);
}

TEST_F(ExportFlowTest, ASecondExportReplacesTheEventAndCopiesBesideTheFirstCopies)
{
    SortEngine engine(exportingSeams());
    sortAndExport(engine, {.fileHandling = FileHandling::copy});
    const std::string first = contentOf(housePath / "A&B.fcpxml");
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::organizing);
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_NE(contentOf(housePath / "A&B.fcpxml"), first);
    EXPECT_TRUE(fs::exists(housePath / "Pool/pool 3 2.mov"));
    EXPECT_EQ(engine.clips().back()->destinationURL, FileUrl(housePath / "Pool/pool 3 2.mov"));
}

TEST_F(ExportFlowTest, ASourceThatIsGoneFailsInTheImportersWordsAndNothingIsDeletedOrOpened)
{
    SortEngine engine(exportingSeams());
    engine.setOptions({.fileHandling = FileHandling::move});
    sort(engine);
    fs::remove(housePath / "pool 3.mov");
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_EQ(engine.stage().text, u"1 file didn't copy cleanly (pool 3.mov) — nothing was deleted from the source."_s);
    EXPECT_TRUE(fs::exists(housePath / "kitchen 1.mov"));
    EXPECT_EQ(engine.clips().front()->destinationURL, std::nullopt);
    EXPECT_FALSE(fs::exists(housePath / "A&B.fcpxml"));
    EXPECT_THAT(opened, IsEmpty());
    engine.backToResults();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_THAT(engine.clips(), SizeIs(3));
}

TEST_F(ExportFlowTest, AnEventThatCannotBeWrittenAfterACopyFailsAndTheCopiesStay)
{
    SortEngine engine(exportingSeams());
    engine.setOptions({.fileHandling = FileHandling::copy});
    sort(engine);
    fs::create_directory(housePath / "A&B.fcpxml");
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_EQ(engine.stage().text, u"Is a directory"_s);
    EXPECT_EQ(engine.clips().front()->destinationURL, FileUrl(housePath / "Kitchen/kitchen 1.mov"));
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(ExportFlowTest, ForResolveTheFileIsRevealedAndNothingIsOpened)
{
    SortEngine engine(exportingSeams());
    engine.setTarget(NLE::resolve);
    sortAndExport(engine, {.fileHandling = FileHandling::copy});
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_THAT(revealed, ElementsAre(FileUrl(housePath / "A&B.fcpxml")));
}

TEST_F(ExportFlowTest, ForPremiereNothingIsCopied)
{
    SortEngine engine(exportingSeams());
    engine.setTarget(NLE::premiere);
    engine.setOptions({.fileHandling = FileHandling::move});
    sort(engine);
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_THAT(namesBeneath(housePath), SizeIs(3));
}

TEST_F(ExportFlowTest, WhatIsChangedDuringTheCopyHoldsForTheEventAndTheEditor)
{
    Gate gate;
    auto parts = exportingSeams();
    parts.organizeByBin = [&gate, organize = parts.organizeByBin](const auto &...arguments) {
        gate.pass();
        return organize(arguments...);
    };
    SortEngine engine(parts);
    engine.setOptions({.fileHandling = FileHandling::copy});
    sort(engine);
    engine.exportEvent();
    gate.awaitArrival();
    engine.setTarget(NLE::resolve);
    engine.setOptions({.writeNextToFootage = false, .fileHandling = FileHandling::move});
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(engine.stage().event, FileUrl(documents / "A&B.fcpxml"));
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_THAT(revealed, ElementsAre(FileUrl(documents / "A&B.fcpxml")));
    EXPECT_TRUE(fs::exists(housePath / "pool 3.mov")) << "a copy stays one";

    engine.setOptions({.fileHandling = FileHandling::copy});
    engine.exportEvent();
    gate.awaitArrival();
    engine.setOptions({.openEditorAfterExport = false, .fileHandling = FileHandling::copy});
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_THAT(revealed, SizeIs(1));
}

TEST_F(ExportFlowTest, AMoveThatIsCancelledWritesTheEventOfWhatItHasAndLeavesTheNextShootAlone)
{
    (void)folder.write("Next/garage 1.mov");
    Gate gate;
    auto parts = exportingSeams();
    parts.organizeByBin = [&gate, organize = parts.organizeByBin](const auto &clips, const FileUrl &root,
                                                                  bool deleteSources, const CopyOrder &order) {
        CopyOrder held = order;
        held.progress = [&](int done, int total) {
            order.progress(done, total);
            if (done == 1) {
                gate.pass();
            }
        };
        return organize(clips, root, deleteSources, held);
    };
    SortEngine engine(parts);
    engine.setOptions({.fileHandling = FileHandling::move});
    sort(engine);
    const auto clips = engine.clips();
    engine.exportEvent();
    gate.awaitArrival();
    engine.sortFolder(FileUrl(folder / "Next"));
    gate.open();
    ASSERT_TRUE(waitUntil([&] { return fs::exists(housePath / "A&B.fcpxml"); }));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    drain();
    EXPECT_THAT(namesBeneath(housePath),
                ElementsAre("A&B.fcpxml", "Kitchen/kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"))
        << "the file in hand was finished, the others stayed";
    EXPECT_EQ(clips[0]->destinationURL, FileUrl(housePath / "Kitchen/kitchen 1.mov"));
    EXPECT_EQ(clips[1]->destinationURL, std::nullopt);
    EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), HasSubstr("/Kitchen/kitchen%201.mov"));
    EXPECT_EQ(engine.stage(), (SortEngine::Stage{.kind = StageKind::results}));
    EXPECT_EQ(engine.folder(), FileUrl(folder / "Next"));
    EXPECT_EQ(engine.total(), 1);
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(ExportFlowTest, AFailureOfACancelledExportIsNotShown)
{
    Gate gate;
    auto parts = exportingSeams();
    parts.organizeByBin = [&gate](const auto &...) -> OrganizeAnswer {
        gate.pass();
        return tl::make_unexpected(CopyFailure{u"too late"_s});
    };
    {
        SortEngine engine(parts);
        engine.setOptions({.fileHandling = FileHandling::copy});
        sort(engine);
        engine.exportEvent();
        gate.awaitArrival();
        engine.reset();
        gate.open();
        ASSERT_TRUE(waitUntil([&] { return !engine.isCopying(); })) << "its outcome has been looked at";
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
    }
    EXPECT_FALSE(fs::exists(housePath / "A&B.fcpxml"));
}

TEST_F(ExportFlowTest, AMovedShootThatIsReopenedGoesOnFromItsFolders)
{
    auto parts = exportingSeams();
    parts.probeClip = [](const FileUrl &url) {
        auto clip = probe(url);
        clip->duration = 10.0;
        clip->naturalSize = clip->displaySize = {160, 90};
        return clip;
    };
    parts.sampleFrames = [](const MediaClip &clip, int, double) {
        return fs::exists(clip.url.path()) ? sample(clip) : Frames();
    };
    for (const bool toShoots : {false, true}) {
        const fs::path root = toShoots ? shoots : housePath;
        const auto setUp = [&](SortEngine &engine) {
            engine.setImportRoot(toShoots ? std::optional(FileUrl(shoots)) : std::nullopt);
            engine.setOptions({.openEditorAfterExport = false, .fileHandling = FileHandling::move});
        };
        if (toShoots) {
            fs::rename(housePath / "Kitchen/kitchen 1.mov", housePath / "kitchen 1.mov");
            fs::rename(housePath / "Garage/kitchen 2.mov", housePath / "kitchen 2.mov");
            fs::rename(housePath / "Pool/pool 3.mov", housePath / "pool 3.mov");
        }
        {
            SortEngine engine(parts);
            setUp(engine);
            sort(engine);
            engine.exportEvent();
            ASSERT_TRUE(reaches(engine, StageKind::done)) << engine.stage().text.toStdString();
        }
        fs::remove(root / "A&B.fcpxml");
        SortEngine engine(parts);
        setUp(engine);
        engine.openProject(projectID(house));
        ASSERT_TRUE(waitUntil([&] {
            return std::ranges::none_of(engine.clips(), [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
        }));
        EXPECT_EQ(engine.clips()[2]->footageURL(), FileUrl(root / "Pool/pool 3.mov"));
        engine.reassign(engine.clips()[1]->id, u"Garage"_s);
        engine.exportEvent();
        ASSERT_TRUE(reaches(engine, StageKind::done)) << engine.stage().text.toStdString();
        EXPECT_THAT(namesBeneath(root),
                    ElementsAre("A&B.fcpxml", "Garage/kitchen 2.mov", "Kitchen/kitchen 1.mov", "Pool/pool 3.mov"));
        const std::string event = contentOf(root / "A&B.fcpxml");
        for (const char *place : {"/Garage/kitchen%202.mov", "/Kitchen/kitchen%201.mov", "/Pool/pool%203.mov"}) {
            EXPECT_THAT(event, HasSubstr(place));
        }
        engine.backToResults();
        engine.setOptions({.openEditorAfterExport = false});
        engine.setImportRoot(std::nullopt);
        engine.exportEvent();
        EXPECT_THAT(contentOf(housePath / "A&B.fcpxml"), HasSubstr("/Pool/pool%203.mov")) << "in place as well";
        fs::remove(housePath / "A&B.fcpxml");
    }
}

TEST_F(ExportFlowTest, PlacesAreTheFilesOfAClipsNameAndItsNumberedSuccessors)
{
    const auto places = [this](const char *clip, const QString &bin) {
        std::vector<std::string> names;
        for (const FileUrl &place : placesInBin(FileUrl(fs::path("/gone") / clip), FileUrl(shoots), bin)) {
            names.push_back(fs::relative(place.path(), shoots).native());
        }
        return names;
    };
    EXPECT_THAT(places("a.mov", u"Pool"_s), IsEmpty());
    for (const char *name : {"a.mov", "a 3.mov", "a 4.mov", "a 7.mov", "b.mov", "a 2.MOV"}) {
        (void)folder.write(fs::path("Shoots/Hallway - Stairs") / name);
    }
    fs::create_directory(shoots / "Hallway - Stairs/b 2.mov");
    EXPECT_THAT(places("a.mov", u"Hallway / Stairs"_s),
                ElementsAre("Hallway - Stairs/a.mov", "Hallway - Stairs/a 3.mov", "Hallway - Stairs/a 4.mov"));
    EXPECT_THAT(places("b.mov", u"Hallway / Stairs"_s), ElementsAre("Hallway - Stairs/b.mov"));
    (void)folder.write("Shoots/c.mov");
    EXPECT_THAT(places("c.mov", QString()), ElementsAre("c.mov"));
}
