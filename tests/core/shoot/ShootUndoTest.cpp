// Undoing and redoing the edits of a shoot, without an engine.
#include <array>
#include <functional>
#include <map>
#include <random>

#include <gmock/gmock.h>

#include "tests/core/clips/NamedClips.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Kind = EditHistory::Kind;

std::optional<std::pair<Kind, QString>> namedStep(const EditHistory::Edit *edit)
{
    return edit == nullptr ? std::nullopt : std::optional(std::pair(edit->kind, edit->bin));
}

// Makes random edits and knows the states that can be reached by undoing and redoing.
class RandomWalk
{
public:
    RandomWalk(Shoot &shoot, unsigned seed) : m_shoot(shoot), m_random(seed) {}

    void step()
    {
        const std::size_t act = below(16);
        if (act < 8) {
            edit(act);
        } else if (act < 9) {
            (void)m_shoot.closeGapsInBins();
            m_states[m_at] = stateOf(m_shoot);
        } else if (act < 13) {
            (void)m_shoot.undo();
            m_at -= m_at > 0 ? 1 : 0;
        } else {
            (void)m_shoot.redo();
            m_at += m_at + 1 < m_states.size() ? 1 : 0;
        }
        EXPECT_EQ(stateOf(m_shoot), m_states[m_at]);
        checkCounts();
        EXPECT_EQ(m_shoot.editToUndo() != nullptr, m_at > 0);
        EXPECT_EQ(m_shoot.editToRedo() != nullptr, m_at + 1 < m_states.size());
    }

    void checkAllTheWayBackAndForth()
    {
        while (m_at > 0) {
            (void)m_shoot.undo();
            EXPECT_EQ(stateOf(m_shoot), m_states[--m_at]);
        }
        EXPECT_EQ(m_shoot.editToUndo(), nullptr);
        while (m_at + 1 < m_states.size()) {
            (void)m_shoot.redo();
            EXPECT_EQ(stateOf(m_shoot), m_states[++m_at]);
        }
        EXPECT_EQ(m_shoot.editToRedo(), nullptr);
    }

private:
    // The kept counts against the clips themselves.
    void checkCounts() const
    {
        std::map<QString, int> counts;
        for (const ClipPtr &clip : m_shoot.clips()) {
            clip->forEachBin([&counts](const QString &bin) { ++counts[bin]; });
        }
        std::map<QString, int> kept;
        for (const BinCount &row : m_shoot.binCounts()) {
            kept[row.bin] = row.count;
        }
        EXPECT_EQ(kept, counts);
        EXPECT_EQ(m_shoot.binCount(), static_cast<int>(counts.size()));
        EXPECT_THAT(m_shoot.clipsInBin(reviewKey()), SizeIs(m_shoot.reviewCount()));
    }

    void edit(std::size_t act)
    {
        static const std::array<QString, 8> bins{u"Kitchen"_s, u"Kitchen 1"_s, u"Kitchen 2"_s, u"Kitchen 3"_s,
                                                 u"Pool"_s,    u"Bedroom 1"_s, u"Bedroom 2"_s, unsortedBin()};
        const QUuid id = m_shoot.clips()[below(m_shoot.clips().size())]->id;
        const QString &bin = bins[below(bins.size())];
        if (act < 3) {
            (void)m_shoot.reassign(id, bin);
        } else if (act < 5) {
            (void)m_shoot.toggleExtraBin(id, bin);
        } else if (act < 6) {
            (void)m_shoot.setSecondBin(id, below(3) == 0 ? QString() : bin);
        } else if (act < 7 || below(6) > 0) {
            (void)m_shoot.confirm(id);
        } else {
            m_shoot.confirmAll();
        }
        const ShootState after = stateOf(m_shoot);
        if (after.records != m_states[m_at].records) {
            m_states.resize(++m_at);
            m_states.push_back(after);
        } else {
            m_states[m_at] = after; // nothing that could be seen
        }
    }

    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random); }

    Shoot &m_shoot;
    std::mt19937 m_random;
    std::vector<ShootState> m_states{stateOf(m_shoot)};
    std::size_t m_at = 0;
};

} // namespace

TEST(Shoot, EveryEditIsUndoneAndRedoneOneByOne)
{
    Shoot shoot = fiveClips();
    const auto id = [&](const QString &name) { return clipNamed(shoot, name)->id; };
    std::vector<ShootState> states{stateOf(shoot)};
    const std::vector<std::pair<std::function<bool()>, std::pair<Kind, QString>>> edits{
        {[&] { return shoot.reassign(id(u"kitchen 3"_s), u"Pool"_s); }, {Kind::move, u"Pool"_s}},
        {[&] { return shoot.toggleExtraBin(id(u"pool 4"_s), u"Garage"_s); }, {Kind::tag, u"Garage"_s}},
        {[&] { return shoot.toggleExtraBin(id(u"pool 4"_s), u"Office"_s); }, {Kind::tag, u"Office"_s}},
        {[&] { return shoot.toggleExtraBin(id(u"pool 4"_s), u"Garage"_s); }, {Kind::untag, u"Garage"_s}},
        {[&] { return shoot.setSecondBin(id(u"pool 4"_s), u"Closet"_s); }, {Kind::setSecondBin, u"Closet"_s}},
        {[&] { return shoot.setSecondBin(id(u"pool 4"_s), {}); }, {Kind::removeSecondBin, {}}},
        {[&] { return shoot.confirm(id(u"dark 1"_s)); }, {Kind::confirm, {}}},
        {[&] { return shoot.confirmAll(), true; }, {Kind::confirmAll, {}}},
    };
    for (const auto &[edit, name] : edits) {
        EXPECT_TRUE(edit());
        EXPECT_EQ(namedStep(shoot.editToUndo()), name);
        EXPECT_NE(stateOf(shoot), states.back());
        states.push_back(stateOf(shoot));
    }
    EXPECT_EQ(shoot.editToRedo(), nullptr);
    for (std::size_t i = edits.size(); i > 0; --i) {
        EXPECT_EQ(namedStep(shoot.editToUndo()), edits[i - 1].second);
        (void)shoot.undo();
        EXPECT_EQ(stateOf(shoot), states[i - 1]) << "undone " << i;
        EXPECT_EQ(namedStep(shoot.editToRedo()), edits[i - 1].second);
    }
    EXPECT_THAT(shoot.undo().clips, IsEmpty()) << "nothing is left to undo";
    EXPECT_EQ(stateOf(shoot), states.front());
    for (std::size_t i = 1; i <= edits.size(); ++i) {
        (void)shoot.redo();
        EXPECT_EQ(stateOf(shoot), states[i]) << "redone " << i;
    }
    EXPECT_THAT(shoot.redo().clips, IsEmpty());
}

TEST(Shoot, AStepBackSaysWhichClipsItChangedAndWhetherOneIsUnderReviewAgain)
{
    Shoot shoot = fiveClips();
    const ClipPtr dark = clipNamed(shoot, u"dark 1"_s);
    const ClipPtr pool = clipNamed(shoot, u"pool 4"_s);
    EXPECT_TRUE(shoot.confirm(dark->id));
    EXPECT_TRUE(shoot.reassign(pool->id, u"Garage"_s));
    const auto first = shoot.undo();
    EXPECT_THAT(first.clips, ElementsAre(pool));
    EXPECT_FALSE(first.isReviewJoined);
    const auto second = shoot.undo();
    EXPECT_THAT(second.clips, ElementsAre(dark));
    EXPECT_TRUE(second.isReviewJoined);
    EXPECT_FALSE(shoot.redo().isReviewJoined);
}

TEST(Shoot, MovingAClipToTheBinThatItIsInIsNoStep)
{
    Shoot shoot = fiveClips();
    EXPECT_TRUE(shoot.reassign(clipNamed(shoot, u"kitchen 3"_s)->id, u"Garage"_s));
    (void)shoot.undo();
    EXPECT_TRUE(shoot.reassign(clipNamed(shoot, u"pool 4"_s)->id, u"Pool"_s));
    EXPECT_EQ(shoot.editToUndo(), nullptr);
    (void)shoot.redo();
    EXPECT_EQ(clipNamed(shoot, u"kitchen 3"_s)->primaryBin, u"Garage"_s) << "what was undone can still be redone";
}

TEST(Shoot, AnEditIsUndoneToTheNamesThatItsBinsHadBeforeTheGapsWereClosed)
{
    const ClipPtr kitchen = namedClip(u"kitchen 1"_s);
    const ClipPtr pool = namedClip(u"pool 2"_s);
    const ClipPtr garage = namedClip(u"garage 3"_s);
    kitchen->primaryBin = u"Kitchen 1"_s;
    pool->primaryBin = u"Kitchen 2"_s;
    garage->primaryBin = u"Kitchen 3"_s;
    garage->extraBins = {u"Kitchen 2"_s};
    Shoot shoot({kitchen, pool, garage});
    const ShootState before = stateOf(shoot);
    EXPECT_TRUE(shoot.reassign(kitchen->id, u"Pool"_s));
    EXPECT_TRUE(shoot.reassign(kitchen->id, u"Kitchen 3"_s));
    const auto renamed = shoot.closeGapsInBins(); // "Kitchen 3" has the oldest clip now
    EXPECT_EQ(renamed.at(u"Kitchen 3"_s), u"Kitchen 1"_s);
    EXPECT_EQ(kitchen->primaryBin, u"Kitchen 1"_s);
    EXPECT_EQ(pool->primaryBin, u"Kitchen 2"_s);
    EXPECT_EQ(garage->primaryBin, u"Kitchen 1"_s);
    EXPECT_EQ(namedStep(shoot.editToUndo()), std::pair(Kind::move, u"Kitchen 1"_s)) << "the bin's name by now";
    const ShootState closed = stateOf(shoot);
    (void)shoot.undo();
    EXPECT_EQ(garage->primaryBin, u"Kitchen 3"_s);
    (void)shoot.undo();
    EXPECT_EQ(stateOf(shoot), before);
    (void)shoot.redo();
    (void)shoot.redo();
    EXPECT_EQ(stateOf(shoot), closed);
}

TEST(Shoot, WhateverIsEditedUndoingMeetsEveryStateAgainAndSoDoesRedoing)
{
    for (const unsigned seed : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U}) {
        SCOPED_TRACE(seed);
        Shoot shoot(namedClips({u"dark 1"_s, u"dark 2"_s, u"dark 3"_s, u"kitchen 4"_s, u"kitchen 5"_s, u"pool 6"_s,
                                u"pool 7"_s, u"garage 8"_s}));
        RandomWalk walk(shoot, seed);
        for (int step = 0; step < 150; ++step) {
            walk.step();
        }
        walk.checkAllTheWayBackAndForth();
    }
}
