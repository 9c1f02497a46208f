// Cancelling and replacing: nothing of a task that was stopped may ever land.
#include <stop_token>

#include "core/bins/RoomLabel.h"
#include "tests/core/engine/SortEngineFixture.h"

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

// Counts itself off when the sort that it was made for is through, behind all that the sort hands over.
class CountedOff : public FrameClassifier
{
public:
    CountedOff(std::shared_ptr<const FrameClassifier> inner, std::atomic<int> &ended)
        : m_inner(std::move(inner))
        , m_ended(ended)
    {}
    ~CountedOff() override { ++m_ended; }
    CountedOff(const CountedOff &) = delete;
    CountedOff &operator=(const CountedOff &) = delete;

    FrameAnalysis analyze(std::span<const QImage> frames) const override { return m_inner->analyze(frames); }

private:
    const std::shared_ptr<const FrameClassifier> m_inner;
    std::atomic<int> &m_ended;
};

} // namespace

TEST_F(SortEngineTest, AResetDuringASortLetsNothingOfItLand)
{
    makeClips({"old 1", "old 2", "old 3"});
    Gate gate;
    std::atomic<int> ended = 0;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    parts.makeLocalClassifier = [&] { return std::make_shared<CountedOff>(std::make_shared<NamedFrames>(), ended); };
    {
        SortEngine engine(parts, 2);
        engine.sortFolder(shoot);
        gate.awaitArrival();
        engine.reset();
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        gate.open(3);
        ASSERT_TRUE(waitUntil([&] { return ended == 1; }));
        drain();
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        EXPECT_THAT(engine.clips(), IsEmpty());
        EXPECT_EQ(engine.total(), 0);
        EXPECT_FALSE(engine.hasFolder());
        EXPECT_EQ(engine.currentProjectID(), std::nullopt);
    }
    EXPECT_THAT(cache.projects(), IsEmpty());
}

TEST_F(SortEngineTest, AResetLeavesNoBinSelectedAndNoProgress)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_EQ(engine.selectedBin(), u"Pool"_s);
    engine.reset();
    EXPECT_EQ(engine.selectedBin(), std::nullopt);
    EXPECT_EQ(engine.done(), 0);
    EXPECT_EQ(engine.total(), 0);
}

TEST_F(SortEngineTest, ASecondSortDuringARunningOneLetsNothingOfTheFirstLand)
{
    (void)folder.write("first/old 1.mov");
    (void)folder.write("first/old 2.mov");
    (void)folder.write("first/old 3.mov");
    (void)folder.write("second/pool 1.mov");
    Gate gate;
    std::atomic<int> ended = 0;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    parts.makeLocalClassifier = [&] { return std::make_shared<CountedOff>(std::make_shared<NamedFrames>(), ended); };
    SortEngine engine(parts, 8); // so wide that the new sort finds threads beside the old one's
    engine.sortFolder(FileUrl(folder / "first"));
    for (int i = 0; i < 3; ++i) {
        gate.awaitArrival();
    }
    engine.sortFolder(FileUrl(folder / "second"));
    ASSERT_TRUE(reaches(engine, StageKind::results)) << "the new sort doesn't wait for the old one";

    gate.open(3);
    ASSERT_TRUE(waitUntil([&] { return ended == 2; }));
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

TEST_F(SortEngineTest, AnEngineThatGoesStopsItsTask)
{
    (void)folder.write("card/pool 1.mov");
    fs::create_directory(folder / "Shoots");
    Gate gate;
    bool wasStopped = false;
    auto parts = seams();
    parts.copyFiles = [&](const auto &, const auto &, const CopyOrder &order) {
        std::binary_semaphore stopped(0);
        const std::stop_callback onStop(order.stop, [&stopped] { stopped.release(); });
        gate.pass();
        wasStopped = stopped.try_acquire_for(std::chrono::seconds(60)); // for a hang
        return std::vector<CopyResult>();
    };
    {
        SortEngine engine(parts);
        engine.setImportRoot(FileUrl(folder / "Shoots"));
        engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
        gate.awaitArrival();
        gate.open();
    }
    EXPECT_TRUE(wasStopped);
}

TEST_F(SortEngineTest, AProjectThatIsOpenedDuringASortLetsNothingOfItLand)
{
    (void)folder.write("first/old 1.mov");
    (void)folder.write("first/old 2.mov");
    (void)folder.write("second/pool 1.mov");
    Gate gate;
    std::atomic<int> ended = 0;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    parts.makeLocalClassifier = [&] { return std::make_shared<CountedOff>(std::make_shared<NamedFrames>(), ended); };
    SortEngine engine(parts);
    engine.sortFolder(FileUrl(folder / "second"));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.sortFolder(FileUrl(folder / "first"));
    gate.awaitArrival();
    engine.openProject(projectID(FileUrl(folder / "second")));
    gate.open(2);
    ASSERT_TRUE(waitUntil([&] { return ended == 2; }));
    drain();
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"pool 1"_s));
    EXPECT_EQ(engine.folderName(), u"second"_s);
    EXPECT_THAT(cache.projects(), SizeIs(1));
}

TEST_F(SortEngineTest, ACardThatIsImportedDuringASortLetsNothingOfItLand)
{
    (void)folder.write("first/old 1.mov");
    (void)folder.write("first/old 2.mov");
    (void)folder.write("card/pool 1.mov");
    fs::create_directory(folder / "Shoots");
    Gate gate;
    Gate copying;
    std::atomic<int> ended = 0;
    auto parts = seams();
    parts.probeClip = holdingBackTheOld(gate, probe);
    parts.makeLocalClassifier = [&] { return std::make_shared<CountedOff>(std::make_shared<NamedFrames>(), ended); };
    parts.copyFiles = [&](const auto &...) {
        copying.pass();
        return std::vector<CopyResult>();
    };
    SortEngine engine(parts);
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.sortFolder(FileUrl(folder / "first"));
    gate.awaitArrival();
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    copying.awaitArrival();
    gate.open(2);
    ASSERT_TRUE(waitUntil([&] { return ended == 1; }));
    drain();
    EXPECT_THAT(engine.clips(), IsEmpty());
    EXPECT_EQ(engine.stage().kind, StageKind::working);
    EXPECT_EQ(engine.total(), 1) << "the card's";
    copying.open();
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
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

TEST_F(SortEngineTest, AnExportThatIsAskedForDuringAnotherStopsThatOne)
{
    makeClips({"kitchen 1"});
    Gate gate;
    std::atomic<int> begun = 0;
    std::atomic<bool> wasFirstStopped = false;
    auto parts = seams();
    parts.organizeByBin = [&](const auto &, const auto &, bool, const CopyOrder &order) {
        if (++begun == 1) {
            gate.pass();
            wasFirstStopped = order.stop.stop_requested();
        }
        return OrganizeAnswer();
    };
    SortEngine engine(parts);
    engine.setOptions({.openEditorAfterExport = false, .fileHandling = FileHandling::copy});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.exportEvent();
    gate.awaitArrival();
    engine.exportEvent();
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
    EXPECT_TRUE(wasFirstStopped);
    EXPECT_EQ(begun, 2);
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(SortEngineTest, AnExportOfASortedFolderLooksForNoFootage)
{
    makeClips({"dark 1"});
    Gate gate;
    auto parts = seams();
    parts.probeClip = [](const FileUrl &url) {
        auto clip = probe(url);
        clip->duration = 1.0;
        clip->naturalSize = {16, 9};
        return clip;
    };
    parts.placesInBin = [&gate](const auto &...) {
        gate.pass();
        return std::vector<FileUrl>();
    };
    parts.organizeByBin = [](const auto &...) { return OrganizeAnswer(); };
    SortEngine engine(parts);
    engine.setOptions({.openEditorAfterExport = false, .fileHandling = FileHandling::copy});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    fs::remove(folder / "dark 1.mov");
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    engine.backToResults();
    engine.setOptions({.openEditorAfterExport = false});
    engine.exportEvent();
    EXPECT_EQ(engine.stage().kind, StageKind::done) << "nothing is waited for";
    gate.open(100);
}

TEST_F(SortEngineTest, AnEmptyCardIsNotSorted)
{
    fs::create_directory(folder / "Shoots");
    fs::create_directory(folder / "card");
    SortEngine engine(seams());
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    std::vector<QString> texts;
    QObject::connect(&engine, &SortEngine::stageChanged, [&] { texts.push_back(engine.stage().text); });
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    EXPECT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
    drain();
    EXPECT_THAT(texts, ElementsAre(u""_s, u"card"_s)) << "a sort would speak of the folder of the copy";
}
