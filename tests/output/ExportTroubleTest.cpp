// Exports that fail, that are cancelled, or during which the editor changes the options; with the real importer.
#include <gmock/gmock.h>

#include "tests/output/ExportFlowFixture.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

using ExportTroubleTest = ExportFlowTest;

TEST_F(ExportTroubleTest, ASourceThatIsGoneFailsInTheImportersWordsAndNothingIsDeletedOrOpened)
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

TEST_F(ExportTroubleTest, AnEventThatCannotBeWrittenAfterACopyFailsAndTheCopiesStay)
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

TEST_F(ExportTroubleTest, WhatIsChangedDuringTheCopyHoldsForTheEventAndTheEditor)
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

TEST_F(ExportTroubleTest, AMoveThatIsCancelledWritesTheEventOfWhatItHasAndLeavesTheNextShootAlone)
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
    EXPECT_THAT(bytesOf(housePath / "A&B.fcpxml"), HasSubstr("/Kitchen/kitchen%201.mov"));
    EXPECT_EQ(engine.stage(), (SortEngine::Stage{.kind = StageKind::results}));
    EXPECT_EQ(engine.folder(), FileUrl(folder / "Next"));
    EXPECT_EQ(engine.total(), 1);
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(ExportTroubleTest, AFailureOfACancelledExportIsNotShown)
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
