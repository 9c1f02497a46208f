// Copies that something else ends early, with the real importer: what becomes of the folder, and what is told.
#include <gmock/gmock.h>
#include <QtCore/QDate>

#include "core/copies/UnfinishedCopy.h"
#include "core/copies/UnreadableCard.h"
#include "output/MediaImporter.h"
#include "output/PlacesInBin.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/output/Footage.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// Holds the second file back when it is whole but has no final name yet; can then fail to give it one.
class HeldSecondFile : public FileOperations
{
public:
    explicit HeldSecondFile(Gate &gate) : m_gate(gate) {}

    int renameWithoutClobbering(int folder, const char *from, const char *to) const override
    {
        if (++m_renamed == 2) {
            m_gate.pass();
            if (fails) {
                errno = EIO;
                return -1;
            }
        }
        return FileOperations::renameWithoutClobbering(folder, from, to);
    }

    std::atomic<bool> fails = false;

private:
    Gate &m_gate;
    mutable std::atomic<int> m_renamed = 0;
};

class UnfinishedCopyFlowTest : public SortEngineTest
{
protected:
    UnfinishedCopyFlowTest()
    {
        for (const std::string name : {"FIRST", "SECOND"}) {
            for (const char *const file : {"kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"}) {
                (void)folder.write(name + "/DCIM/" + file, name + file);
            }
        }
        (void)folder.write("plain/pool 9.mov", "pool");
        fs::create_directory(shoots);
    }

    SortSeams copyingSeams() { return copyingSeams(held); }
    SortSeams copyingSeams(const FileOperations &files)
    {
        auto parts = seams();
        parts.copyFiles = [this, &files](const auto &urls, const FileUrl &destination, const CopyOrder &order) {
            const std::stop_callback release(order.stop, [this] { releaseOnStop(); });
            return MediaImporter::copyFiles(urls, destination, order, files).map_error([](const ImportError &error) {
                return CopyFailure{error.description()};
            });
        };
        parts.organizeByBin = [this, &files](const auto &clips, const FileUrl &root, bool deleteSources,
                                             const CopyOrder &order) {
            const std::stop_callback release(order.stop, [this] { releaseOnStop(); });
            return MediaImporter::organizeByBin(clips, root, deleteSources, order, files)
                .map_error([](const ImportError &error) { return CopyFailure{error.description()}; });
        };
        parts.placesInBin = placesInBin;
        parts.copyJournal = journal;
        parts.copyLog = &log;
        return parts;
    }

    // An engine with a card of three clips on its way, of which the second is held back.
    std::unique_ptr<SortEngine> importingEngine() { return importingEngine(held); }
    std::unique_ptr<SortEngine> importingEngine(const FileOperations &files)
    {
        auto engine = std::make_unique<SortEngine>(copyingSeams(files));
        engine->setImportRoot(FileUrl(shoots));
        engine->importCard(FileUrl(folder / "FIRST"), u"FIRST"_s);
        gate.awaitArrival();
        return engine;
    }

    // The same with an export.
    std::unique_ptr<SortEngine> exportingEngine(FileHandling handling)
    {
        auto engine = std::make_unique<SortEngine>(copyingSeams());
        engine->setOptions({.openEditorAfterExport = false, .fileHandling = handling});
        engine->sortFolder(FileUrl(folder / "FIRST/DCIM"));
        EXPECT_TRUE(reaches(*engine, StageKind::results));
        engine->exportEvent();
        gate.awaitArrival();
        return engine;
    }

    [[nodiscard]] bool ends(const SortEngine &engine)
    {
        gate.open();
        return waitUntil([&] { return !engine.isCopying(); });
    }

    static fs::path dated(const std::string &name)
    {
        return name + " — " + QDate::currentDate().toString(Qt::ISODate).toStdString();
    }

    using Told = std::vector<UnfinishedCopy>;

    // A stopped copy of the first card's files into this folder, as it is told; it left these out.
    Told stopped(CopyKind kind, const QString &name, const fs::path &into, const std::vector<std::string> &files) const
    {
        UnfinishedCopy copy{.kind = kind, .name = name, .folder = FileUrl(into), .end = UnfinishedCopy::End::stopped};
        for (const std::string &file : files) {
            copy.files.push_back({FileUrl(folder / "FIRST/DCIM" / file), {}});
        }
        return {copy};
    }
    Told stoppedCard(const fs::path &name, const std::vector<std::string> &files = {"pool 3.mov"}) const
    {
        return stopped(CopyKind::card, u"FIRST"_s, shoots / name, files);
    }
    Told stoppedExport(CopyKind kind, const std::vector<std::string> &files = {"pool 3.mov"}) const
    {
        return stopped(kind, u"DCIM"_s, folder / "FIRST/DCIM", files);
    }

    std::vector<std::string> namesInShoots(const fs::path &name) const { return namesBeneath(shoots / name); }

    // Returns the copies of which a program tells that is started now.
    Told toldNext()
    {
        SortEngine next(copyingSeams());
        EXPECT_TRUE(waitUntil([&] { return !next.unfinishedCopies().empty(); }));
        return next.unfinishedCopies();
    }

    // Lets the file in work go on once its copy is told to stop, and not before.
    void releaseOnStop()
    {
        if (isReleasedOnStop) {
            gate.open();
        }
    }

    Gate gate;
    std::atomic<bool> isReleasedOnStop = false;
    HeldSecondFile held{gate};
    const fs::path shoots = folder / "Shoots";
    const fs::path journal = folder / "data/Unfinished";
    const CopyLog log{folder / "data/Copies"};
    const fs::path whole = dated("FIRST");
    const fs::path marked = whole.native() + " (unfinished)";
};

} // namespace

TEST_F(UnfinishedCopyFlowTest, ASecondCardMarksTheFirstsFolderAfterTheFileInWorkAndSaysWhatIsNotInIt)
{
    const auto engine = importingEngine();
    engine->importCard(FileUrl(folder / "SECOND"), u"SECOND"_s);
    EXPECT_TRUE(fs::exists(shoots / whole)) << "a file is still on its way into it";
    EXPECT_THAT(engine->unfinishedCopies(), IsEmpty());
    ASSERT_TRUE(ends(*engine));
    EXPECT_FALSE(fs::exists(shoots / whole));
    EXPECT_THAT(namesInShoots(marked), ElementsAre("kitchen 1.mov", "kitchen 2.mov"));
    EXPECT_EQ(engine->unfinishedCopies(), stoppedCard(marked));
    ASSERT_TRUE(reaches(*engine, StageKind::results)) << "of the second";
    EXPECT_THAT(namesInShoots(dated("SECOND")), ElementsAre("kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"));
    EXPECT_EQ(engine->unfinishedCopies(), stoppedCard(marked));
    EXPECT_TRUE(engine->unreadableCards().empty());
}

TEST_F(UnfinishedCopyFlowTest, TheRecordOfAStoppedCopyIsTheMarkedFolders)
{
    (void)folder.write("FIRST/DCIM/kitchen 1.THM", "thumbnail");
    (void)folder.write("FIRST/DCIM/kitchen 2.THM", "thumbnail");
    (void)folder.write("FIRST/DCIM/notes.txt", "notes");
    const auto engine = importingEngine();
    engine->sortFolder(FileUrl(folder / "plain"));
    ASSERT_TRUE(ends(*engine));
    EXPECT_THAT(log.load(projectID(FileUrl(shoots / whole))), IsEmpty());
    const auto records = log.load(projectID(FileUrl(shoots / marked)));
    ASSERT_THAT(records, testing::SizeIs(1));
    EXPECT_EQ(records[0].destination, FileUrl(shoots / marked));
    EXPECT_THAT(records[0].notCopied, ElementsAre(FileUrl(folder / "FIRST/DCIM/notes.txt"))) << "and no sidecars";
    std::vector<std::optional<FileUrl>> copies;
    for (const CopiedFile &file : records[0].files) {
        copies.push_back(file.destination);
        EXPECT_TRUE(!file.destination || fs::exists(file.destination->path())) << file.source.path();
    }
    EXPECT_THAT(copies,
                ElementsAre(FileUrl(shoots / marked / "kitchen 1.mov"), FileUrl(shoots / marked / "kitchen 1.THM"),
                            std::nullopt, std::nullopt, std::nullopt))
        << "the second file, a sidecar, was the last";
}

TEST_F(UnfinishedCopyFlowTest, AnotherSortAnOpenedProjectAndQuittingMarkItToo)
{
    const std::vector<std::function<void(SortEngine &)>> begin{
        [this](SortEngine &engine) { engine.sortFolder(FileUrl(folder / "plain")); },
        [this](SortEngine &engine) { engine.openProject(projectID(FileUrl(folder / "plain"))); },
        [](SortEngine &engine) { engine.resetToQuit(); },
    };
    std::size_t made = 0;
    for (const auto &next : begin) {
        const HeldSecondFile again(gate);
        const auto engine = importingEngine(again);
        next(*engine);
        ASSERT_TRUE(ends(*engine));
        const fs::path name = made == 0 ? marked : fs::path(marked.native() + " (" + std::to_string(made + 1) + ")");
        EXPECT_EQ(engine->unfinishedCopies(), stoppedCard(name));
        EXPECT_THAT(namesInShoots(name), ElementsAre("kitchen 1.mov", "kitchen 2.mov"));
        EXPECT_FALSE(fs::exists(shoots / whole));
        ++made;
        EXPECT_TRUE(waitUntil([&] { return engine->stage().kind != StageKind::working; }));
        engine->dismissUnfinishedCopies();
    }
}

TEST_F(UnfinishedCopyFlowTest, CancellingKeepsTheFoldersNameAndSaysWhatIsNotInIt)
{
    const auto engine = importingEngine();
    engine->reset();
    ASSERT_TRUE(ends(*engine));
    EXPECT_THAT(namesInShoots(whole), ElementsAre("kitchen 1.mov", "kitchen 2.mov"));
    EXPECT_EQ(engine->unfinishedCopies(), stoppedCard(whole));
    EXPECT_EQ(engine->stage(), SortEngine::Stage{});
}

TEST_F(UnfinishedCopyFlowTest, AFolderThatIsSortedBeforeItsCopyHasEndedKeepsItsName)
{
    for (const fs::path &sorted : {shoots / whole, shoots, shoots / whole / ""}) {
        fs::remove_all(shoots / whole);
        const HeldSecondFile again(gate);
        const auto engine = importingEngine(again);
        engine->sortFolder(FileUrl(sorted));
        ASSERT_TRUE(ends(*engine));
        EXPECT_EQ(engine->unfinishedCopies(), stoppedCard(whole)) << sorted;
        EXPECT_TRUE(fs::exists(shoots / whole));
        ASSERT_TRUE(reaches(*engine, StageKind::results));
        engine->dismissUnfinishedCopies();
    }
}

TEST_F(UnfinishedCopyFlowTest, ACopyThatHadItsLastFileIsCompleteAlthoughItWasStopped)
{
    fs::remove(folder / "FIRST/DCIM/pool 3.mov");
    const auto engine = importingEngine();
    engine->sortFolder(FileUrl(folder / "plain"));
    ASSERT_TRUE(ends(*engine));
    EXPECT_THAT(namesInShoots(whole), ElementsAre("kitchen 1.mov", "kitchen 2.mov"));
    EXPECT_THAT(engine->unfinishedCopies(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(UnfinishedCopyFlowTest, AFailureAfterTheStopIsNoReasonToSayNothing)
{
    const auto engine = importingEngine();
    held.fails = true;
    engine->importCard(FileUrl(folder / "SECOND"), u"SECOND"_s);
    ASSERT_TRUE(ends(*engine));
    EXPECT_THAT(namesInShoots(marked), ElementsAre("kitchen 1.mov"));
    EXPECT_EQ(engine->unfinishedCopies(), stoppedCard(marked, {"kitchen 2.mov", "pool 3.mov"}));
    ASSERT_TRUE(reaches(*engine, StageKind::results));
}

TEST_F(UnfinishedCopyFlowTest, AnEngineThatGoesMarksTheFolderAndTheNextOneSaysWhyUntilItIsDismissed)
{
    {
        isReleasedOnStop = true;
        const auto engine = importingEngine(); // waits, as it goes, for the file in work
    }
    EXPECT_THAT(namesInShoots(marked), ElementsAre("kitchen 1.mov", "kitchen 2.mov"));
    EXPECT_EQ(toldNext(), stoppedCard(marked));
    SortEngine engine(copyingSeams());
    ASSERT_TRUE(waitUntil([&] { return !engine.unfinishedCopies().empty(); }));
    EXPECT_EQ(engine.stage(), SortEngine::Stage{});
    int changes = 0;
    QObject::connect(&engine, &SortEngine::unfinishedCopiesChanged, &engine, [&] { ++changes; });
    engine.dismissUnfinishedCopies();
    engine.dismissUnfinishedCopies();
    EXPECT_THAT(engine.unfinishedCopies(), IsEmpty());
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(UnfinishedCopyFlowTest, ACompleteImportAndACompleteExportLeaveNothingToSay)
{
    const auto engine = importingEngine();
    gate.open();
    ASSERT_TRUE(reaches(*engine, StageKind::results));
    EXPECT_TRUE(fs::is_empty(journal));
    engine->exportEvent();
    ASSERT_TRUE(reaches(*engine, StageKind::done)) << engine->stage().text.toStdString();
    EXPECT_TRUE(waitUntil([&] { return fs::is_empty(journal); }));
    EXPECT_THAT(engine->unfinishedCopies(), IsEmpty());
}

TEST_F(UnfinishedCopyFlowTest, AFailedImportIsShownAndNotToldAgain)
{
    const auto engine = importingEngine();
    held.fails = true;
    gate.open();
    ASSERT_TRUE(reaches(*engine, StageKind::failed));
    EXPECT_TRUE(fs::exists(shoots / whole));
    EXPECT_THAT(engine->unfinishedCopies(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(UnfinishedCopyFlowTest, AnExportThatIsEndedEarlySaysWhatItLeftOut)
{
    const auto engine = exportingEngine(FileHandling::copy);
    engine->importCard(FileUrl(folder / "SECOND"), u"SECOND"_s); // without a Shoots folder nothing happens
    EXPECT_EQ(engine->stage().kind, StageKind::organizing);
    engine->sortFolder(FileUrl(folder / "plain"));
    ASSERT_TRUE(ends(*engine));
    EXPECT_EQ(engine->unfinishedCopies(), stoppedExport(CopyKind::copy));
    ASSERT_TRUE(reaches(*engine, StageKind::results));
    EXPECT_EQ(toldNext(), engine->unfinishedCopies());
}

TEST_F(UnfinishedCopyFlowTest, AMoveThatIsEndedEarlySaysWhatIsStillWhereItWas)
{
    const auto engine = exportingEngine(FileHandling::move);
    engine->reset();
    ASSERT_TRUE(ends(*engine));
    EXPECT_EQ(engine->unfinishedCopies(), stoppedExport(CopyKind::move));
    EXPECT_TRUE(fs::exists(folder / "FIRST/DCIM/pool 3.mov"));
    EXPECT_FALSE(fs::exists(folder / "FIRST/DCIM/kitchen 1.mov"));
}

TEST_F(UnfinishedCopyFlowTest, AMoveThatFailedAfterItsStopSaysThatNothingWasDeleted)
{
    const auto engine = exportingEngine(FileHandling::move);
    held.fails = true;
    engine->reset();
    ASSERT_TRUE(ends(*engine));
    Told told = stoppedExport(CopyKind::move, {"kitchen 1.mov", "kitchen 2.mov", "pool 3.mov"});
    told[0].failure = u"1 file didn't copy cleanly (kitchen 2.mov) — nothing was deleted from the source."_s;
    EXPECT_EQ(engine->unfinishedCopies(), told);
    EXPECT_TRUE(fs::exists(folder / "FIRST/DCIM/kitchen 1.mov"));
}

TEST_F(UnfinishedCopyFlowTest, AnExportThatIsStoppedBehindItsLastClipIsComplete)
{
    fs::remove(folder / "FIRST/DCIM/pool 3.mov");
    const auto engine = exportingEngine(FileHandling::copy);
    engine->reset();
    ASSERT_TRUE(ends(*engine));
    EXPECT_THAT(engine->unfinishedCopies(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(UnfinishedCopyFlowTest, AnEngineThatGoesDuringAnExportLeavesItToTheNextOneToSay)
{
    {
        isReleasedOnStop = true;
        const auto engine = exportingEngine(FileHandling::copy);
    }
    EXPECT_EQ(toldNext(), stoppedExport(CopyKind::copy));
}
