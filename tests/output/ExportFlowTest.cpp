// The export as the editor starts it, with the real importer and the real event.
#include <gmock/gmock.h>

#include "tests/output/ExportFlowFixture.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace fs = std::filesystem;

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
    EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), HasSubstr("A&amp;B"));
    EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), Not(HasSubstr("A&B")));
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
    EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), HasSubstr("/Kitchen/kitchen%201.mov"));
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
    EXPECT_EQ(bytesOf(housePath / "Pool/pool 3.mov"), "pool 3.mov");
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
    EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), HasSubstr("\"Kitchen\""));
    EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), Not(HasSubstr("Kitchen 3")));
    EXPECT_TRUE(fs::exists(housePath / "Kitchen/kitchen 1.mov"));
    EXPECT_EQ(cache.open(projectID(house))->clips.front().primaryBin, u"Kitchen"_s);
}

TEST_F(ExportFlowTest, ASecondExportReplacesTheEventAndCopiesBesideTheFirstCopies)
{
    SortEngine engine(exportingSeams());
    sortAndExport(engine, {.fileHandling = FileHandling::copy});
    const std::string first = bytesOf(housePath / "A&B.fcpxml");
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::organizing);
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_NE(bytesOf(housePath / "A&B.fcpxml"), first);
    EXPECT_TRUE(fs::exists(housePath / "Pool/pool 3 2.mov"));
    EXPECT_EQ(engine.clips().back()->destinationURL, FileUrl(housePath / "Pool/pool 3 2.mov"));
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
        const std::string event = bytesOf(root / "A&B.fcpxml");
        for (const char *place : {"/Garage/kitchen%202.mov", "/Kitchen/kitchen%201.mov", "/Pool/pool%203.mov"}) {
            EXPECT_THAT(event, HasSubstr(place));
        }
        engine.backToResults();
        engine.setOptions({.openEditorAfterExport = false});
        engine.setImportRoot(std::nullopt);
        engine.exportEvent();
        EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), HasSubstr("/Pool/pool%203.mov")) << "in place as well";
        fs::remove(housePath / "A&B.fcpxml");
    }
}
