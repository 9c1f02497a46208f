// A card on its way into the Shoots folder.
#include <QtCore/QDate>

#include "tests/core/engine/CardImportFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

namespace fs = std::filesystem;

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
    makeClips({"pool 1"});
    Gate gate;
    auto parts = importingSeams();
    parts.probeClip = [&gate](const FileUrl &url) {
        gate.pass();
        return probe(url);
    };
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
    parts.copyFiles = [&](const auto &urls, const auto &destination, const CopyOrder &order) {
        auto copied = copyPlainly({urls.front()}, destination, order.progress);
        gate.pass();
        EXPECT_TRUE(order.stop.stop_requested());
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
    parts.copyFiles = [&](const auto &urls, const auto &destination, const CopyOrder &order) {
        gate.pass();
        return copyPlainly(urls, destination, order.progress);
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
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
}

TEST_F(CardImportTest, ACopyThatFailedIsShownToHaveFailedByTheTimeItCountsAsEnded)
{
    insertCard();
    auto parts = importingSeams();
    parts.copyFiles = [](const auto &...) { return tl::make_unexpected(CopyFailure{u"no"_s}); };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    std::vector<std::pair<bool, StageKind>> seen;
    QObject::connect(&engine, &SortEngine::isCopyingChanged,
                     [&] { seen.emplace_back(engine.isCopying(), engine.stage().kind); });
    engine.importCard(card(), u"CARD"_s);
    EXPECT_TRUE(waitUntil([&] { return seen.size() == 2; }));
    EXPECT_THAT(seen, ElementsAre(Pair(true, StageKind::working), Pair(false, StageKind::failed)));
}

TEST_F(CardImportTest, ACopyCountsAsEndedBeforeTheSortOfItShowsAnything)
{
    insertCard();
    auto parts = importingSeams();
    parts.copyFiles = [](const auto &...) { return std::vector<CopyResult>(); }; // so that the copy holds no clips
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    std::vector<std::pair<bool, StageKind>> seen;
    QObject::connect(&engine, &SortEngine::stageChanged,
                     [&] { seen.emplace_back(engine.isCopying(), engine.stage().kind); });
    engine.importCard(card(), u"CARD"_s);
    EXPECT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_THAT(seen, ElementsAre(Pair(false, StageKind::working), Pair(false, StageKind::emptyFolder)));
}

TEST_F(CardImportTest, ProgressBeginsAnewWhenTheCopyIsOver)
{
    insertCard();
    auto parts = importingSeams();
    parts.copyFiles = [](const auto &, const auto &, const CopyOrder &order) {
        order.progress(2, 2);
        return std::vector<CopyResult>(); // so that the copy holds no clips, and its sort shows no progress
    };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    std::vector<int> done;
    QObject::connect(&engine, &SortEngine::progressChanged, [&] { done.push_back(engine.done()); });
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_THAT(done, ElementsAre(0, 2, 0));
}

TEST_F(CardImportTest, TheSortOfACopyGoesByWhatTheEditorHasChosenWhenTheCopyHasEnded)
{
    (void)folder.write("card/unsorted 1.mov", "film");
    fs::create_directory(folder / "Shoots");
    Gate gate;
    int cloudAsked = 0;
    auto parts = importingSeams();
    parts.copyFiles = [&](const auto &urls, const auto &destination, const CopyOrder &order) {
        gate.pass();
        return copyPlainly(urls, destination, order.progress);
    };
    parts.makeCloudClassifier = [&](const CloudSettings &, std::shared_ptr<const FrameClassifier> local) {
        ++cloudAsked;
        return local;
    };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    gate.awaitArrival();
    engine.setOptions({.sendUnsureToReview = false, .fileHandling = FileHandling::copy});
    engine.setModelTier(ModelTier::cloud);
    engine.setCloudSettings({.apiKey = u"key"_s});
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_FALSE(engine.clips().front()->needsReview);
    EXPECT_EQ(cloudAsked, 1);
}

TEST_F(CardImportTest, AnImportLeavesTheOpenProjectAloneAndItsShootGetsANameOfItsOwn)
{
    insertCard();
    makeClips({"pool 9"});
    Gate gate;
    auto parts = importingSeams();
    parts.copyFiles = [&](const auto &urls, const auto &destination, const CopyOrder &order) {
        gate.pass();
        return copyPlainly(urls, destination, order.progress);
    };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    engine.sortFolder(FileUrl(folder / "card"));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const QString open = projectID(card());
    engine.renameProject(open, u"House"_s);

    engine.importCard(card(), u"CARD"_s);
    gate.awaitArrival();
    EXPECT_EQ(engine.currentProjectID(), open);
    EXPECT_EQ(engine.projectName(), u"House"_s);
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(engine.displayName(), engine.folderName());
    ASSERT_THAT(engine.projects(), SizeIs(2));
    EXPECT_EQ(engine.projects()[0].name, engine.folderName());
    EXPECT_EQ(engine.projects()[1].name, u"House"_s);
}

TEST_F(CardImportTest, AResetForgetsTheCardAndSaysSoAtTheEnd)
{
    insertCard();
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.renameProject(*engine.currentProjectID(), u"House"_s);
    QString shown;
    bool isCards = false;
    QObject::connect(&engine, &SortEngine::folderChanged, [&] {
        shown = engine.displayName();
        isCards = engine.isRemovableImport();
    });
    engine.renameProject(*engine.currentProjectID(), u"Villa"_s);
    EXPECT_EQ(shown, u"Villa"_s);
    EXPECT_TRUE(isCards);
    engine.reset();
    EXPECT_EQ(shown, QString());
    EXPECT_FALSE(isCards);
    EXPECT_EQ(engine.importVolumeName(), std::nullopt);
    EXPECT_EQ(engine.currentProjectID(), std::nullopt);
}

TEST_F(CardImportTest, AnotherFolderChosenAfterAnEmptyCardIsNoCardsAnyMore)
{
    fs::create_directory(folder / "Shoots");
    fs::create_directory(folder / "card");
    (void)folder.write("plain/pool 1.mov");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    engine.sortFolder(FileUrl(folder / "plain"));
    EXPECT_FALSE(engine.isRemovableImport());
    EXPECT_EQ(engine.importVolumeName(), std::nullopt);
    ASSERT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(CardImportTest, AnImportedCardThatIsSortedAgainIsStillACards)
{
    insertCard();
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.sortAgain();
    EXPECT_TRUE(engine.isRemovableImport());
    EXPECT_EQ(engine.importVolumeName(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results));
}
