// Undoing and redoing in a shoot.
#include <array>
#include <random>

#include "core/RoomLabel.h"
#include "tests/core/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Kind = EditHistory::Kind;

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

    class RandomWalk;

    SortEngine engine{seams()};
};

// Makes random edits and knows the states that can be reached by undoing and redoing.
class UndoTest::RandomWalk
{
public:
    RandomWalk(UndoTest &test, unsigned seed) : m_test(test), m_engine(test.engine), m_random(seed) {}

    void step()
    {
        const std::size_t act = below(16);
        if (act < 8) {
            edit(act);
        } else if (act < 9) {
            m_engine.closeGapsInBins();
            m_states[m_at] = m_test.state();
        } else if (act < 13) {
            m_engine.undo();
            m_at -= m_at > 0 ? 1 : 0;
        } else {
            m_engine.redo();
            m_at += m_at + 1 < m_states.size() ? 1 : 0;
        }
        EXPECT_EQ(m_test.state(), m_states[m_at]);
        EXPECT_EQ(m_engine.editToUndo() != nullptr, m_at > 0);
        EXPECT_EQ(m_engine.editToRedo() != nullptr, m_at + 1 < m_states.size());
    }

    void checkAllTheWayBackAndForth()
    {
        while (m_at > 0) {
            m_engine.undo();
            EXPECT_EQ(m_test.state(), m_states[--m_at]);
        }
        EXPECT_EQ(m_engine.editToUndo(), nullptr);
        while (m_at + 1 < m_states.size()) {
            m_engine.redo();
            EXPECT_EQ(m_test.state(), m_states[++m_at]);
        }
        EXPECT_EQ(m_engine.editToRedo(), nullptr);
        EXPECT_EQ(m_test.saved()->clips, m_states.back().records);
    }

private:
    void edit(std::size_t act)
    {
        static const std::array<QString, 8> bins{u"Kitchen"_s, u"Kitchen 1"_s, u"Kitchen 2"_s, u"Kitchen 3"_s,
                                                 u"Pool"_s,    u"Bedroom 1"_s, u"Bedroom 2"_s, unsortedBin()};
        const QUuid id = m_engine.clips()[below(m_engine.clips().size())]->id;
        const QString &bin = bins[below(bins.size())];
        if (act < 3) {
            m_engine.reassign(id, bin);
        } else if (act < 5) {
            m_engine.toggleExtraBin(id, bin);
        } else if (act < 6) {
            m_engine.setSecondBin(id, below(3) == 0 ? QString() : bin);
        } else if (act < 7 || below(6) > 0) {
            m_engine.confirm(id);
        } else {
            m_engine.confirmAll();
        }
        const State after = m_test.state();
        if (after.records != m_states[m_at].records) {
            m_states.resize(++m_at);
            m_states.push_back(after);
        } else {
            m_states[m_at] = after; // nothing that could be seen
        }
    }

    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random); }

    UndoTest &m_test;
    SortEngine &m_engine;
    std::mt19937 m_random;
    std::vector<State> m_states{m_test.state()};
    std::size_t m_at = 0;
};

std::optional<std::pair<Kind, QString>> namedStep(const EditHistory::Edit *edit)
{
    return edit == nullptr ? std::nullopt : std::optional(std::pair(edit->kind, edit->bin));
}

} // namespace

TEST_F(UndoTest, EveryEditIsUndoneAndRedoneOneByOne)
{
    sortAll();
    std::vector<State> states{state()};
    const std::vector<std::pair<std::function<void()>, std::pair<Kind, QString>>> edits{
        {[this] { engine.reassign(clip(u"kitchen 3"_s)->id, u"Pool"_s); }, {Kind::move, u"Pool"_s}},
        {[this] { engine.toggleExtraBin(clip(u"pool 4"_s)->id, u"Garage"_s); }, {Kind::tag, u"Garage"_s}},
        {[this] { engine.toggleExtraBin(clip(u"pool 4"_s)->id, u"Office"_s); }, {Kind::tag, u"Office"_s}},
        {[this] { engine.toggleExtraBin(clip(u"pool 4"_s)->id, u"Garage"_s); }, {Kind::untag, u"Garage"_s}},
        {[this] { engine.setSecondBin(clip(u"pool 4"_s)->id, u"Closet"_s); }, {Kind::setSecondBin, u"Closet"_s}},
        {[this] { engine.setSecondBin(clip(u"pool 4"_s)->id, {}); }, {Kind::removeSecondBin, {}}},
        {[this] { engine.confirm(clip(u"dark 1"_s)->id); }, {Kind::confirm, {}}},
        {[this] { engine.confirmAll(); }, {Kind::confirmAll, {}}},
    };
    for (const auto &[edit, name] : edits) {
        edit();
        EXPECT_EQ(namedStep(engine.editToUndo()), name);
        EXPECT_NE(state(), states.back());
        states.push_back(state());
    }
    EXPECT_EQ(engine.editToRedo(), nullptr);
    for (std::size_t i = edits.size(); i > 0; --i) {
        EXPECT_EQ(namedStep(engine.editToUndo()), edits[i - 1].second);
        engine.undo();
        EXPECT_EQ(state(), states[i - 1]) << "undone " << i;
        EXPECT_EQ(namedStep(engine.editToRedo()), edits[i - 1].second);
    }
    EXPECT_EQ(engine.editToUndo(), nullptr);
    engine.undo();
    EXPECT_EQ(state(), states.front()) << "nothing is left to undo";
    for (std::size_t i = 1; i <= edits.size(); ++i) {
        engine.redo();
        EXPECT_EQ(state(), states[i]) << "redone " << i;
    }
    EXPECT_EQ(engine.editToRedo(), nullptr);
}

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

TEST_F(UndoTest, MovingAClipToTheBinThatItIsInIsNoStep)
{
    sortAll();
    engine.reassign(clip(u"kitchen 3"_s)->id, u"Garage"_s);
    engine.undo();
    engine.reassign(clip(u"pool 4"_s)->id, u"Pool"_s);
    EXPECT_EQ(engine.editToUndo(), nullptr);
    engine.redo();
    EXPECT_EQ(clip(u"kitchen 3"_s)->primaryBin, u"Garage"_s) << "what was undone can still be redone";
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

TEST_F(UndoTest, AnEditIsUndoneToTheNamesThatItsBinsHadBeforeAnExportRenamedThem)
{
    sort({"kitchen 1", "pool 2", "garage 3"});
    clip(u"kitchen 1"_s)->primaryBin = u"Kitchen 1"_s;
    clip(u"pool 2"_s)->primaryBin = u"Kitchen 2"_s;
    clip(u"garage 3"_s)->primaryBin = u"Kitchen 3"_s;
    clip(u"garage 3"_s)->extraBins = {u"Kitchen 2"_s};
    const State before = state();
    engine.reassign(clip(u"kitchen 1"_s)->id, u"Pool"_s);
    engine.reassign(clip(u"kitchen 1"_s)->id, u"Kitchen 3"_s);
    engine.closeGapsInBins(); // "Kitchen 3" has the oldest clip now
    EXPECT_EQ(clip(u"kitchen 1"_s)->primaryBin, u"Kitchen 1"_s);
    EXPECT_EQ(clip(u"pool 2"_s)->primaryBin, u"Kitchen 2"_s);
    EXPECT_EQ(clip(u"garage 3"_s)->primaryBin, u"Kitchen 1"_s);
    EXPECT_EQ(namedStep(engine.editToUndo()), std::pair(Kind::move, u"Kitchen 1"_s)) << "the bin's name by now";
    const State renamed = state();
    engine.undo();
    EXPECT_EQ(clip(u"garage 3"_s)->primaryBin, u"Kitchen 3"_s);
    engine.undo();
    EXPECT_EQ(state(), before);
    engine.redo();
    engine.redo();
    EXPECT_EQ(state(), renamed);
}

// Edits, exports, undoing and redoing in any order, against the states that were met on the way.
TEST_F(UndoTest, WhateverIsEditedUndoingMeetsEveryStateAgainAndSoDoesRedoing)
{
    makeClips({"dark 1", "dark 2", "dark 3", "kitchen 4", "kitchen 5", "pool 6", "pool 7", "garage 8"});
    for (const unsigned seed : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U}) {
        SCOPED_TRACE(seed);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        RandomWalk walk(*this, seed);
        for (int step = 0; step < 150; ++step) {
            walk.step();
        }
        walk.checkAllTheWayBackAndForth();
    }
}
