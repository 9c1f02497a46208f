// Undoing and redoing in a shoot.
#include "core/bins/RoomLabel.h"
#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UndoTest : public SortEngineTest
{
protected:
    void sort(std::initializer_list<const char *> names)
    {
        makeClips(names);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    // Two clips under review, a kitchen and two pools.
    void sortAll() { sort({"dark 1", "dark 2", "kitchen 3", "pool 4", "pool 5"}); }

    ClipPtr clip(const QString &name) const
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        return found == engine.clips().end() ? nullptr : *found;
    }

    // All of the shoot that an edit may change.
    struct State
    {
        std::vector<ClipRecord> records;
        std::set<QUuid> confirmed;

        friend bool operator==(const State &, const State &) = default;
    };

    State state() const
    {
        State now{.records = {}, .confirmed = engine.confirmedReview()};
        std::ranges::transform(engine.clips(), std::back_inserter(now.records),
                               [](const ClipPtr &c) { return ClipRecord::fromClip(*c); });
        return now;
    }

    SortEngine engine{seams()};
};

} // namespace

TEST_F(UndoTest, AnUndoneEditIsNotifiedAndSavedOnceAsIfItHadBeenMadeTheOtherWay)
{
    sortAll();
    const State sorted = state();
    engine.reassign(clip(u"dark 1"_s)->id, u"Pool"_s);
    int clips = 0;
    int edits = 0;
    int saves = 0;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { ++clips; });
    QObject::connect(&engine, &SortEngine::editsChanged, [&] { ++edits; });
    QObject::connect(&engine, &SortEngine::projectsChanged, [&] { ++saves; });
    engine.undo();
    EXPECT_EQ(clips, 1);
    EXPECT_EQ(edits, 1);
    EXPECT_EQ(saves, 1);
    EXPECT_EQ(saved()->clips, sorted.records);
    EXPECT_EQ(saved()->summary.reviewCount, 2);
    EXPECT_THAT(engine.confirmedReview(), IsEmpty());
    EXPECT_TRUE(engine.isUnderReview(*clip(u"dark 1"_s)));
    engine.redo();
    EXPECT_EQ(saved()->clips, state().records);
    EXPECT_EQ(saved()->summary.reviewCount, 1);
}

TEST_F(UndoTest, AnotherShootForgetsTheEdits)
{
    sortAll();
    const auto forgets = [this](const std::function<void()> &change) {
        engine.reassign(clip(u"kitchen 3"_s)->id, u"Garage"_s);
        engine.reassign(clip(u"kitchen 3"_s)->id, u"Office"_s);
        engine.reassign(clip(u"kitchen 3"_s)->id, u"Closet"_s);
        engine.undo();
        EXPECT_TRUE(engine.editToUndo() && engine.editToRedo());
        change();
        EXPECT_TRUE(reaches(engine, StageKind::results));
        return !engine.editToUndo() && !engine.editToRedo();
    };
    EXPECT_TRUE(forgets([this] { engine.sortAgain(); }));
    EXPECT_TRUE(forgets([this] { engine.openProject(projectID(shoot)); }));
    EXPECT_TRUE(forgets([this] {
        engine.reset();
        EXPECT_TRUE(!engine.editToUndo() && !engine.editToRedo());
        engine.openProject(projectID(shoot));
    }));
}

TEST_F(UndoTest, TheEditsSurviveAnExportAndWaitForTheClipsToBeOnShow)
{
    sortAll();
    engine.reassign(clip(u"kitchen 3"_s)->id, u"Garage"_s);
    int edits = 0;
    QObject::connect(&engine, &SortEngine::editsChanged, [&] { ++edits; });
    engine.exportEvent();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    EXPECT_EQ(engine.editToUndo(), nullptr);
    EXPECT_GT(edits, 0);
    engine.undo();
    EXPECT_EQ(clip(u"kitchen 3"_s)->primaryBin, u"Garage"_s);
    edits = 0;
    engine.backToResults();
    EXPECT_GT(edits, 0);
    engine.undo();
    EXPECT_EQ(clip(u"kitchen 3"_s)->primaryBin, u"Kitchen"_s);
}

TEST_F(UndoTest, NothingIsUndoneWhileFootageIsBeingCopied)
{
    Gate gate;
    SortSeams parts = seams();
    parts.organizeByBin = [&](const auto &...) -> OrganizeAnswer {
        gate.pass();
        return {};
    };
    SortEngine copier(parts);
    makeClips({"kitchen 1", "pool 2"});
    copier.sortFolder(shoot);
    ASSERT_TRUE(reaches(copier, StageKind::results));
    copier.reassign(copier.clips().front()->id, u"Garage"_s);
    copier.setOptions({.fileHandling = FileHandling::copy});
    copier.exportEvent();
    gate.awaitArrival();
    ASSERT_EQ(copier.stage().kind, StageKind::organizing);
    EXPECT_EQ(copier.editToUndo(), nullptr);
    copier.undo();
    EXPECT_EQ(copier.clips().front()->primaryBin, u"Garage"_s);
    gate.open();
    ASSERT_TRUE(reaches(copier, StageKind::done));
    copier.backToResults();
    copier.undo();
    EXPECT_EQ(copier.clips().front()->primaryBin, u"Kitchen"_s);
}

TEST_F(UndoTest, ABinThatIsEmptyNowGivesWayToTheOneThatTheClipIsIn)
{
    sort({"kitchen 1", "pool 2", "pool 3"});
    engine.reassign(clip(u"pool 2"_s)->id, u"Garage"_s);
    engine.setSelectedBin(u"Garage"_s);
    engine.undo();
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s);
    engine.redo();
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s) << "the clip is seen to leave";
}

TEST_F(UndoTest, ABinThatHasNothingToDoWithTheEditGivesWayToTheOneThatTheClipIsIn)
{
    sort({"kitchen 1", "kitchen 2", "pool 3", "pool 4", "garage 5"});
    engine.toggleExtraBin(clip(u"kitchen 1"_s)->id, u"Pool"_s);
    engine.setSelectedBin(u"Garage"_s);
    engine.undo();
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
    engine.redo();
    EXPECT_EQ(engine.selectedBin(), u"Kitchen"_s);
}

TEST_F(UndoTest, AClipThatComesBackToTheReviewIsShownThereAndLeavesItAgainByRedo)
{
    sortAll();
    engine.confirm(clip(u"dark 1"_s)->id);
    engine.reassign(clip(u"dark 2"_s)->id, u"Pool"_s);
    ASSERT_EQ(engine.selectedBin(), u"Pool"_s);
    engine.undo();
    EXPECT_EQ(engine.selectedBin(), reviewKey());
    EXPECT_THAT(namesOf(engine.clipsInBin(reviewKey())), ElementsAre(u"dark 2"_s));
    EXPECT_EQ(clip(u"dark 2"_s)->reviewReason, u"couldn't read any frames"_s);
    engine.redo();
    EXPECT_EQ(engine.selectedBin(), u"Pool"_s) << "the review is empty, so it shows where the clip is";
}

TEST_F(UndoTest, APreviewStaysForItsOwnClipAndClosesForAnother)
{
    sortAll();
    engine.reassign(clip(u"kitchen 3"_s)->id, u"Garage"_s);
    engine.setPreviewClip(clip(u"pool 4"_s));
    engine.setSecondBin(clip(u"pool 4"_s)->id, u"Office"_s);
    engine.undo();
    EXPECT_EQ(engine.previewClip(), clip(u"pool 4"_s));
    engine.undo();
    EXPECT_FALSE(engine.hasPreview());
    EXPECT_EQ(clip(u"kitchen 3"_s)->primaryBin, u"Kitchen"_s);
}
