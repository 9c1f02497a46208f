// Cancelling, replacing and importing: nothing of a task that was stopped may ever land.
#include <QtCore/QDate>

#include "core/RoomLabel.h"
#include "tests/core/SortEngineFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

// Probes as the fixture does, but holds back every clip whose name begins with "old".
auto holdingBackTheOld(Gate &gate, ClipPtr (*probe)(const FileUrl &))
{
    return [&gate, probe](const FileUrl &url) {
        if (url.baseName().startsWith(u"old"_s)) {
            gate.pass();
        }
        return probe(url);
    };
}

} // namespace

TEST_F(SortEngineTest, AResetDuringASortLetsNothingOfItLand)
{
    makeClips({"old 1", "old 2", "old 3"});
    Gate gate;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    {
        SortEngine engine(parts, 2);
        engine.sortFolder(shoot);
        gate.awaitArrival();
        engine.reset();
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        gate.open(3);
        drain();
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        EXPECT_THAT(engine.clips(), IsEmpty());
        EXPECT_EQ(engine.total(), 0);
        EXPECT_FALSE(engine.hasFolder());
        EXPECT_EQ(engine.currentProjectID(), std::nullopt);
    }
    EXPECT_THAT(cache.projects(), IsEmpty());
}

TEST_F(SortEngineTest, ASecondSortDuringARunningOneLetsNothingOfTheFirstLand)
{
    (void)folder.write("first/old 1.mov");
    (void)folder.write("first/old 2.mov");
    (void)folder.write("first/old 3.mov");
    (void)folder.write("second/pool 1.mov");
    Gate gate;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    SortEngine engine(parts, 8); // so wide that the new sort finds threads beside the old one's
    engine.sortFolder(FileUrl(folder / "first"));
    for (int i = 0; i < 3; ++i) {
        gate.awaitArrival();
    }
    engine.sortFolder(FileUrl(folder / "second"));
    ASSERT_TRUE(reaches(engine, StageKind::results)) << "the new sort doesn't wait for the old one";

    gate.open(3);
    drain();
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"pool 1"_s));
    EXPECT_EQ(engine.total(), 1);
    EXPECT_EQ(engine.folderName(), u"second"_s);
    ASSERT_THAT(cache.projects(), SizeIs(1));
    EXPECT_EQ(cache.projects()[0].folderPath, FileUrl(folder / "second"));
}

TEST_F(SortEngineTest, AStoppedSortStartsNoFurtherClips)
{
    makeClips({"old 1", "old 2", "old 3", "old 4", "old 5"});
    Gate gate;
    std::atomic<int> probed = 0;
    auto parts = seams();
    parts.probeClip = [&, inner = holdingBackTheOld(gate, probe)](const FileUrl &url) {
        ++probed;
        return inner(url);
    };
    {
        SortEngine engine(parts, 4);
        engine.sortFolder(shoot);
        gate.awaitArrival();
        gate.awaitArrival();
        engine.reset();
        gate.open(5);
    }
    EXPECT_EQ(probed, 2) << "the batch in flight ends, the next one never begins";
}

TEST_F(SortEngineTest, TheEngineCanGoWhileASortRuns)
{
    makeClips({"old 1", "old 2", "old 3"});
    Gate gate;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    auto engine = std::make_unique<SortEngine>(parts, 2);
    engine->sortFolder(shoot);
    gate.awaitArrival();
    gate.open(3);
    engine.reset();
    drain();
    EXPECT_THAT(cache.projects(), IsEmpty());
}

TEST_F(SortEngineTest, ManyQuickRestartsEndWithTheLastFolder)
{
    for (int i = 0; i < 20; ++i) {
        (void)folder.write("shoot " + std::to_string(i) + "/pool 1.mov");
    }
    SortEngine engine(seams());
    for (int i = 0; i < 20; ++i) {
        engine.sortFolder(FileUrl(folder / ("shoot " + std::to_string(i))));
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(reaches(engine, StageKind::results));
    drain();
    EXPECT_EQ(engine.folderName(), u"shoot 19"_s);
    EXPECT_THAT(engine.clips(), SizeIs(1));
    EXPECT_EQ(engine.clips().front()->url.path(), folder / "shoot 19/pool 1.mov");
}

namespace {

// A real copy, small and plain: what the engine needs of an importer.
tl::expected<std::vector<CopyResult>, CopyFailure> copyPlainly(const std::vector<FileUrl> &urls,
                                                               const FileUrl &destination,
                                                               const ProgressCallback &progress)
{
    std::vector<CopyResult> results;
    fs::create_directories(destination.path());
    for (const FileUrl &url : urls) {
        const FileUrl copy = destination.appending(url.lastPathComponent());
        fs::copy_file(url.path(), copy.path());
        results.push_back({url, copy});
        progress(static_cast<int>(results.size()), static_cast<int>(urls.size()));
    }
    return results;
}

} // namespace

class CardImportTest : public SortEngineTest
{
protected:
    SortSeams importingSeams()
    {
        auto parts = seams();
        parts.copyFiles = [this](const auto &urls, const auto &destination, VerifyLevel verify, const auto &progress,
                                 const std::stop_token &) {
            askedLevel = verify;
            return copyPlainly(urls, destination, progress);
        };
        return parts;
    }

    void insertCard() const
    {
        (void)folder.write("card/DCIM/kitchen 1.mov", "film");
        (void)folder.write("card/DCIM/pool 2.mov", "film");
        fs::create_directory(folder / "Shoots");
    }

    FileUrl card() const { return FileUrl(folder / "card"); }
    FileUrl shoots() const { return FileUrl(folder / "Shoots"); }

    std::optional<VerifyLevel> askedLevel;
};

TEST_F(CardImportTest, WithoutAShootsFolderNothingHappens)
{
    insertCard();
    SortEngine engine(importingSeams());
    engine.importCard(card(), u"CARD"_s);
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    EXPECT_FALSE(engine.isRemovableImport());
}

TEST_F(CardImportTest, AMissingShootsFolderIsSaidAndTheRunningTaskIsLeftAlone)
{
    makeClips({"old 1"});
    Gate gate;
    auto parts = importingSeams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    SortEngine engine(parts);
    engine.setImportRoot(FileUrl(folder / "gone"));
    engine.sortFolder(shoot);
    gate.awaitArrival();
    engine.importCard(card(), u"CARD"_s);
    EXPECT_EQ(engine.stage(),
              (SortEngine::Stage{
                  .kind = StageKind::failed,
                  .text = u"Your Shoots folder isn't available right now — check it's connected, then try again."_s}));
    gate.open();
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(CardImportTest, AShootsFolderThatCannotBeLookedAtIsSaidToBeUnavailable)
{
    insertCard();
    (void)folder.write("locked/Shoots/keep");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "locked", fs::perms::none);
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(folder / "locked/Shoots"));
    {
        const Unprivileged user;
        engine.importCard(card(), u"CARD"_s);
    }
    EXPECT_EQ(engine.stage().kind, StageKind::failed);
    fs::permissions(folder / "locked", fs::perms::all);
}

TEST_F(CardImportTest, CopiesTheCardIntoADatedFolderAndSortsTheCopy)
{
    insertCard();
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    engine.setOptions({.verifyLevel = VerifyLevel::checksum});
    std::vector<std::pair<int, int>> progress;
    QObject::connect(&engine, &SortEngine::progressChanged,
                     [&] { progress.emplace_back(engine.done(), engine.total()); });
    engine.importCard(card(), u"CARD"_s);
    EXPECT_TRUE(engine.isRemovableImport());
    EXPECT_EQ(engine.importVolumeName(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results));

    const QString name = u"CARD — "_s + QDate::currentDate().toString(Qt::ISODate);
    EXPECT_EQ(engine.folderName(), name);
    EXPECT_EQ(askedLevel, VerifyLevel::checksum);
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s, u"pool 2"_s));
    EXPECT_EQ(engine.clips().front()->url, shoots().appending(name).appending(u"kitchen 1.mov"_s));
    EXPECT_THAT(progress,
                ElementsAre(std::pair(0, 2), std::pair(1, 2), std::pair(2, 2), std::pair(0, 2), std::pair(2, 2)));
    EXPECT_THAT(engine.recents(), SizeIs(1));
}

TEST_F(CardImportTest, LeavingInPlaceBecomesCopyingForGoodAndMovingStays)
{
    insertCard();
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    int saved = 0;
    QObject::connect(&engine, &SortEngine::optionsChanged, [&] { ++saved; });
    engine.importCard(card(), u"CARD"_s);
    EXPECT_EQ(engine.options().fileHandling, FileHandling::copy);
    EXPECT_EQ(saved, 1);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.setOptions({.fileHandling = FileHandling::move});
    engine.importCard(card(), u"CARD"_s);
    EXPECT_EQ(engine.options().fileHandling, FileHandling::move);
}

TEST_F(CardImportTest, ACardWithoutVideoFilesIsSaidToBeEmptyByItsOwnName)
{
    fs::create_directory(folder / "Shoots");
    fs::create_directory(folder / "card");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_EQ(engine.stage().text, u"card"_s);
}

TEST_F(CardImportTest, AFailedCopyFailsInTheImportersWords)
{
    insertCard();
    auto parts = importingSeams();
    parts.copyFiles = [](const auto &...) {
        return tl::make_unexpected(CopyFailure{u"1 file didn't copy cleanly (a.mov)"_s});
    };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_EQ(engine.stage().text, u"1 file didn't copy cleanly (a.mov)"_s);
}

TEST_F(CardImportTest, CancellingTheCopyStopsBeforeTheSortAndLeavesTheDatedFolder)
{
    insertCard();
    Gate gate;
    std::atomic<int> probed = 0;
    auto parts = importingSeams();
    parts.copyFiles = [&](const auto &urls, const auto &destination, VerifyLevel, const auto &progress,
                          const std::stop_token &stop) {
        auto copied = copyPlainly({urls.front()}, destination, progress);
        gate.pass();
        EXPECT_TRUE(stop.stop_requested());
        return copied;
    };
    parts.probeClip = [&](const FileUrl &url) {
        ++probed;
        return probe(url);
    };
    std::optional<FileUrl> dated;
    {
        SortEngine engine(parts);
        engine.setImportRoot(shoots());
        engine.importCard(card(), u"CARD"_s);
        dated = engine.folder();
        gate.awaitArrival();
        engine.reset();
        gate.open();
        drain();
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        EXPECT_FALSE(engine.isRemovableImport());
        EXPECT_EQ(engine.importVolumeName(), std::nullopt);
    }
    EXPECT_EQ(probed, 0);
    EXPECT_TRUE(fs::exists(dated->path() / "kitchen 1.mov"));
}

TEST_F(CardImportTest, ACopyIsUnderWayUntilItsLastFileIsDoneEvenWhenItWasStopped)
{
    insertCard();
    Gate gate;
    auto parts = importingSeams();
    parts.copyFiles = [&](const auto &urls, const auto &destination, VerifyLevel, const auto &progress,
                          const std::stop_token &) {
        gate.pass();
        return copyPlainly(urls, destination, progress);
    };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    EXPECT_FALSE(engine.isCopying());
    engine.importCard(card(), u"CARD"_s);
    gate.awaitArrival();
    EXPECT_TRUE(engine.isCopying());
    engine.reset();
    EXPECT_TRUE(engine.isCopying());
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));

    engine.importCard(card(), u"CARD"_s);
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_FALSE(engine.isCopying());
}

TEST_F(CardImportTest, AnEmptyCardIsNotUnderWayForever)
{
    fs::create_directory(folder / "Shoots");
    fs::create_directory(folder / "card");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    EXPECT_TRUE(engine.isCopying());
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_FALSE(engine.isCopying());
}

TEST_F(SortEngineTest, AnExportIsUnderWayUntilItsEventIsWritten)
{
    makeClips({"kitchen 1"});
    auto parts = seams();
    parts.organizeByBin = [](const auto &...) { return OrganizeAnswer(); };
    SortEngine engine(parts);
    SortOptions options;
    options.fileHandling = FileHandling::copy;
    engine.setOptions(options);
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    std::vector<std::pair<bool, StageKind>> seen;
    QObject::connect(&engine, &SortEngine::isCopyingChanged,
                     [&] { seen.emplace_back(engine.isCopying(), engine.stage().kind); });
    engine.exportEvent();
    EXPECT_TRUE(waitUntil([&] { return seen.size() == 2; }));
    EXPECT_THAT(seen, ElementsAre(Pair(true, StageKind::organizing), Pair(false, StageKind::done)));
}
