// The records of a shoot's copies, from the run to the screens.
#include "core/copies/CopyHistory.h"

#include "core/copies/CopyJournal.h"
#include "tests/core/engine/CopyHistoryFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

TEST_F(CopyHistoryTest, AnImportLeavesARecordThatNamesTheCard)
{
    SortEngine engine(copyingSeams());
    EXPECT_FALSE(engine.copyHistory()->hasReport());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_THAT(engine.copyHistory()->records(), SizeIs(1));
    const CopyRecord &record = engine.copyHistory()->records().front();
    EXPECT_EQ(record.kind, CopyKind::card);
    EXPECT_EQ(record.source, FileUrl(folder / "card"));
    EXPECT_EQ(record.volumeName, u"CARD"_s);
    EXPECT_EQ(record.destination, FileUrl(dated()));
    EXPECT_THAT(record.files, SizeIs(2));
    EXPECT_THAT(record.notCopied, ElementsAre(FileUrl(folder / "card/DCIM/photo.jpg"), FileUrl(folder / "card/index")));
    EXPECT_TRUE(isEachFileProved(record));
    EXPECT_FALSE(isSafeToErase(record)) << "a photo would go with the card";
}

TEST_F(CopyHistoryTest, FoldersOfTheCardThatCannotBeReadAreInTheRecord)
{
    const fs::path closed = folder.write("card/DCIM/closed/pool 3.mov").parent_path();
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "Shoots", fs::perms::all);
    fs::permissions(closed, fs::perms::none);
    SortEngine engine(copyingSeams());
    {
        const Unprivileged user;
        import(engine);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }
    const CopyRecord &record = engine.copyHistory()->records().front();
    EXPECT_THAT(record.unreadable, ElementsAre(FileUrl(closed)));
    EXPECT_FALSE(isSafeToErase(record));
    fs::permissions(closed, fs::perms::all);
}

TEST_F(CopyHistoryTest, AFailedImportHasItsReportToo)
{
    importFails = true;
    SortEngine engine(copyingSeams());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_TRUE(engine.copyHistory()->hasReport());
    EXPECT_EQ(engine.copyHistory()->records().front().failure, u"no"_s);
    engine.showCopyReport();
    ASSERT_TRUE(waitUntil([this] { return !opened.empty(); }));
    EXPECT_THAT(opened, ElementsAre(FileUrl(dated() / (dated().filename().string() + " copy report.html"))));
}

TEST_F(CopyHistoryTest, AFailedImportIsNotSorted)
{
    importFails = true;
    std::atomic<int> loaded = 0;
    auto parts = copyingSeams();
    parts.makeLocalClassifier = [&loaded] {
        ++loaded;
        return std::make_shared<NamedFrames>();
    };
    {
        SortEngine engine(parts);
        import(engine);
        EXPECT_TRUE(waitUntil([&engine] { return !engine.isCopying(); }));
        drain();
        EXPECT_EQ(engine.stage().kind, StageKind::failed);
    }
    EXPECT_EQ(loaded, 0);
}

TEST_F(CopyHistoryTest, AnExportAddsItsRecordToThatOfTheImport)
{
    SortEngine engine(copyingSeams());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    ASSERT_THAT(engine.copyHistory()->records(), SizeIs(2));
    EXPECT_EQ(engine.copyHistory()->records()[0].kind, CopyKind::card);
    EXPECT_EQ(engine.copyHistory()->records()[1].source, FileUrl(dated()));
    EXPECT_EQ(engine.copyHistory()->records()[1].destination, FileUrl(folder / "Shoots"));
}

TEST_F(CopyHistoryTest, AClipThatWasInItsFolderAlreadyIsInTheRecordAndKeepsItFromBeingSafe)
{
    auto parts = copyingSeams();
    parts.placesInBin = [this](const FileUrl &clip, const auto &, const QString &) {
        return clip.lastPathComponent() == u"pool 2.mov"_s ? std::vector{FileUrl(folder / "Shoots/Pool/pool 2.mov")}
                                                           : std::vector<FileUrl>();
    };
    SortEngine engine(parts);
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    for (const ClipPtr &clip : engine.clips()) {
        if (clip->url.lastPathComponent() == u"pool 2.mov"_s) {
            clip->foundURL = FileUrl(folder / "Shoots/Pool/pool 2.mov");
        }
    }
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    const CopyRecord &record = engine.copyHistory()->records().back();
    ASSERT_THAT(record.files, SizeIs(2));
    EXPECT_EQ(record.files[1].state, CopyState::alreadyThere);
    EXPECT_EQ(record.files[1].destination, FileUrl(folder / "Shoots/Pool/pool 2.mov"));
    EXPECT_FALSE(isSafeToErase(record));
}

TEST_F(CopyHistoryTest, TheRecordsComeBackWithTheProjectAndGoWithTheShoot)
{
    {
        SortEngine engine(copyingSeams());
        import(engine);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }
    SortEngine engine(copyingSeams());
    EXPECT_FALSE(engine.copyHistory()->hasReport());
    engine.openProject(projectID(FileUrl(dated())));
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_FALSE(engine.copyHistory()->hasReport()) << "a thread reads them, and the clips don't wait for it";
    ASSERT_TRUE(waitUntil([&] { return engine.copyHistory()->hasReport(); }));
    engine.reset();
    EXPECT_FALSE(engine.copyHistory()->hasReport());
    engine.sortFolder(FileUrl(dated()));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_TRUE(waitUntil([&] { return engine.copyHistory()->hasReport(); }));
    engine.sortFolder(FileUrl(folder / "card"));
    EXPECT_FALSE(engine.copyHistory()->hasReport());
    ASSERT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(CopyHistoryTest, WithoutALogARecordLastsAsLongAsItsShootIsOnShow)
{
    auto parts = copyingSeams();
    parts.copyLog = nullptr;
    SortEngine engine(parts);
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_TRUE(engine.copyHistory()->hasReport());
    engine.openProject(projectID(FileUrl(dated())));
    EXPECT_FALSE(engine.copyHistory()->hasReport());
}

TEST_F(CopyHistoryTest, ASecondImportHidesTheReportOfTheFirstFromItsBeginning)
{
    SortEngine engine(copyingSeams());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_TRUE(engine.copyHistory()->hasReport());
    engine.importCard(FileUrl(folder / "card"), u"OTHER"_s);
    EXPECT_FALSE(engine.copyHistory()->hasReport());
    copying.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(engine.copyHistory()->records(), SizeIs(1));
}

TEST_F(CopyHistoryTest, AStoppedImportThatHadItsLastFileIsRecordedUnderItsOwnFolder)
{
    auto parts = copyingSeams();
    parts.placesInBin = [](const FileUrl &file, const FileUrl &root, const QString &) {
        const FileUrl place = root.appending(file.lastPathComponent());
        return fs::exists(place.path()) ? std::vector{place} : std::vector<FileUrl>();
    };
    SortEngine engine(parts);
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    copying.awaitArrival();
    engine.resetToQuit();
    copying.open();
    ASSERT_TRUE(waitUntil([&engine] { return !engine.isCopying(); }));
    EXPECT_THAT(engine.unfinishedCopies(), IsEmpty());
    const auto records = log.load(projectID(FileUrl(dated())));
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].destination, FileUrl(dated()));
}

TEST_F(CopyHistoryTest, AnExportThatBeginsBeforeTheRecordsAreReadIsAddedToThem)
{
    {
        SortEngine engine(copyingSeams());
        import(engine);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }
    SortEngine engine(copyingSeams());
    engine.setOptions({.openEditorAfterExport = false, .fileHandling = FileHandling::copy});
    engine.openProject(projectID(FileUrl(dated())));
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    ASSERT_TRUE(waitUntil([&] { return engine.copyHistory()->records().size() == 2; }));
    EXPECT_EQ(engine.copyHistory()->records()[0].kind, CopyKind::card);
    EXPECT_EQ(engine.copyHistory()->records()[1].kind, CopyKind::copy);
}

TEST_F(CopyHistoryTest, OfTwoShootsThatAreOpenedInOneGoOnlyTheLastOnesRecordsAreShown)
{
    SortEngine engine(copyingSeams());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.sortFolder(FileUrl(folder / "card"));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const CopyRecord exported{.kind = CopyKind::copy, .source = FileUrl(folder / "card"), .destination = shoot};
    log.save(projectID(exported.source), exported);
    engine.openProject(projectID(FileUrl(dated())));
    engine.openProject(projectID(FileUrl(folder / "card")));
    ASSERT_TRUE(waitUntil([&] { return engine.copyHistory()->hasReport(); }));
    drain();
    EXPECT_THAT(engine.copyHistory()->records(), ElementsAre(exported));
}

TEST(CopyHistory, RecordsAddedMeanwhileSupersedeThoseThatWereKept)
{
    const auto recordOfKind = [](CopyKind kind, const char *destination) {
        return CopyRecord{.kind = kind, .destination = FileUrl(destination)};
    };
    CopyHistory history;
    history.add(recordOfKind(CopyKind::move, "/new"));
    history.restore({recordOfKind(CopyKind::card, "/card"), recordOfKind(CopyKind::copy, "/old")});
    EXPECT_THAT(history.records(),
                ElementsAre(recordOfKind(CopyKind::card, "/card"), recordOfKind(CopyKind::move, "/new")));
    history.clear();
    EXPECT_FALSE(history.hasReport());
}

TEST_F(CopyHistoryTest, AnImportThatAnotherSortReplacesIsStillRecordedButNotShown)
{
    SortEngine engine(copyingSeams());
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    copying.awaitArrival();
    engine.sortFolder(FileUrl(folder / "card"));
    copying.open();
    ASSERT_TRUE(waitUntil([&engine] { return !engine.isCopying(); }));
    EXPECT_FALSE(engine.copyHistory()->hasReport());
    EXPECT_THAT(log.load(projectID(FileUrl(dated().native() + " (unfinished)"))), SizeIs(1));
    ASSERT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(CopyHistoryTest, AStartKeepsTheRecordsOf500ShootsAndOfAllWhileACopyIsUnfinished)
{
    for (int i = 0; i < 502; ++i) {
        (void)cacheFolder.write("Copies/" + std::to_string(i) + ".json");
    }
    auto parts = copyingSeams();
    const auto recordsAfterAStart = [&] {
        {
            const SortEngine engine(parts); // waits for its tasks as it goes
        }
        return std::distance(fs::directory_iterator(cacheFolder / "Copies"), fs::directory_iterator());
    };
    EXPECT_EQ(recordsAfterAStart(), 502) << "without a journal nobody knows which copies are unfinished";
    parts.copyJournal = cacheFolder / "Unfinished";
    auto underWay = CopyJournal(parts.copyJournal).begin({.name = u"CARD"_s, .folder = FileUrl(dated())});
    EXPECT_EQ(recordsAfterAStart(), 502);
    underWay.close();
    EXPECT_EQ(recordsAfterAStart(), 500);
}

TEST_F(CopyHistoryTest, TheProgressOfACopyIsThereWhileItRuns)
{
    SortEngine engine(copyingSeams());
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    ASSERT_TRUE(waitUntil([&engine] { return engine.copyHistory()->progress().has_value(); }));
    EXPECT_EQ(engine.copyHistory()->progress(), (CopyProgress{.totalBytes = 8, .copiedBytes = 4}));
    copying.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(engine.copyHistory()->progress(), std::nullopt);
}

TEST_F(CopyHistoryTest, AStoppedCopyShowsNoProgress)
{
    SortEngine engine(copyingSeams());
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    ASSERT_TRUE(waitUntil([&engine] { return engine.copyHistory()->progress().has_value(); }));
    engine.reset();
    EXPECT_EQ(engine.copyHistory()->progress(), std::nullopt);
    copying.open();
}
