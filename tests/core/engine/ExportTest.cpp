// The event of a shoot that stays where it is.
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

TEST_F(SortEngineTest, ExportWritesTheEventBesideTheFootageAndOpensTheEditor)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(engine.progress(), 1.0) << "of one clip too";
    engine.exportEvent();
    const FileUrl event(folder.path() / (folder.path().filename().native() + ".fcpxml"));
    EXPECT_EQ(engine.stage(), (SortEngine::Stage{.kind = StageKind::done, .event = event}));
    EXPECT_THAT(opened, ElementsAre(event));
    EXPECT_EQ(bytesOf(event.path()), folder.path().filename().native());

    engine.backToResults();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    engine.setTarget(NLE::resolve);
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::done) << "a second export replaces the file";
    EXPECT_THAT(opened, SizeIs(1)) << "Resolve imports by hand";
    EXPECT_THAT(revealed, ElementsAre(event));
}

TEST_F(SortEngineTest, TheEventIsOpenedAndRevealedOnRequestOnceThereIsOne)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    engine.setOptions({.openEditorAfterExport = false});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.openEvent();
    engine.revealEvent();
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_THAT(revealed, IsEmpty());
    EXPECT_EQ(engine.eventPath(), QString());
    engine.exportEvent();
    ASSERT_EQ(engine.stage().kind, StageKind::done);
    EXPECT_EQ(engine.eventPath(), engine.stage().event->displayPath());
    engine.openEvent();
    engine.revealEvent();
    EXPECT_THAT(opened, ElementsAre(*engine.stage().event));
    EXPECT_THAT(revealed, ElementsAre(*engine.stage().event));
}

TEST_F(SortEngineTest, AFileForAnotherProgramStandsInTheEventsFolder)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    EXPECT_EQ(engine.handoffFile(HandoffFormat::otio), std::nullopt);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const FileUrl file(folder.path() / (folder.path().filename().native() + ".otio"));
    EXPECT_EQ(engine.handoffFile(HandoffFormat::otio), file);
    engine.exportEvent();
    engine.setOptions({.writeNextToFootage = false});
    EXPECT_EQ(engine.handoffFile(HandoffFormat::otio), file) << "the event that is there counts";
}

TEST_F(SortEngineTest, ExportOpensNothingWhenTheOptionIsOff)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    engine.setOptions({.openEditorAfterExport = false});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::done);
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(SortEngineTest, ExportForPremiereOrWithoutAFolderDoesNothing)
{
    SortEngine engine(seams());
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    makeClips({"pool 1"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.setTarget(NLE::premiere);
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
}

TEST_F(SortEngineTest, AnEventThatCannotBeWrittenFailsWithTheReasonAndTheClipsStay)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    fs::create_directory(folder.path() / (folder.path().filename().native() + ".fcpxml"));
    engine.exportEvent();
    EXPECT_EQ(engine.stage(), (SortEngine::Stage{.kind = StageKind::failed, .text = u"Is a directory"_s}));
    EXPECT_THAT(opened, IsEmpty());
    engine.backToResults();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_THAT(engine.clips(), SizeIs(1));
}

TEST_F(SortEngineTest, ANumberWithoutASiblingIsGoneFromTheBinsAtExport)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.reassign(engine.clips().front()->id, u"Kitchen 3"_s);
    engine.exportEvent();
    EXPECT_EQ(engine.clips().front()->primaryBin, u"Kitchen"_s);
    EXPECT_EQ(saved()->clips.front().primaryBin, u"Kitchen"_s);
}

TEST_F(SortEngineTest, TheChosenBinKeepsBeingChosenUnderTheNameThatTheExportGivesIt)
{
    makeClips({"pool 1", "pool 2", "pool 3"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.reassign(engine.clips()[0]->id, u"Kitchen 7"_s);
    engine.reassign(engine.clips()[1]->id, u"Kitchen 2"_s);
    engine.setSelectedBin(u"Kitchen 2"_s);
    engine.exportEvent();
    EXPECT_EQ(engine.selectedBin(), u"Kitchen 2"_s);
    engine.setSelectedBin(u"Kitchen 1"_s);
    engine.reassign(engine.clips()[1]->id, u"Pool"_s);
    engine.exportEvent();
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    engine.setSelectedBin(u"Pool"_s);
    engine.exportEvent();
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
}

TEST_F(SortEngineTest, WithoutAFolderTheSummaryTellsOfAnEvent)
{
    EXPECT_EQ(SortEngine(seams()).exportSummary(), u"Event.fcpxml · 0 bins · 0 clips"_s);
}

TEST_F(SortEngineTest, AFolderNameOfAnyBytesGivesAnEventOfThatName)
{
    const fs::path odd = folder / "A&B \xff";
    (void)folder.write("A&B \xff/pool 1.mov");
    SortEngine engine(seams());
    engine.sortFolder(FileUrl(odd));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::done);
    EXPECT_TRUE(fs::exists(odd / "A&B \xff.fcpxml"));
}

TEST_F(SortEngineTest, TheWayToAnotherProgramIsAskedForOnce)
{
    int asked = 0;
    auto parts = seams();
    parts.chooseHandoff = [&asked] { ++asked; };
    SortEngine(parts).chooseHandoff();
    EXPECT_EQ(asked, 1);
}

TEST_F(SortEngineTest, ACopyAnnouncesWhereTheFootageIsNow)
{
    makeClips({"pool 1"});
    const FileUrl copy(folder / "Pool/pool 1.mov");
    auto parts = seams();
    parts.organizeByBin = [&copy](const std::vector<ClipToOrganize> &clips, const auto &...) -> OrganizeAnswer {
        return std::map{std::pair(clips.front().id, copy)};
    };
    SortEngine engine(parts);
    engine.setOptions({.fileHandling = FileHandling::copy});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    std::optional<FileUrl> shown;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { shown = engine.clips().front()->destinationURL; });
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(shown, copy);
}
