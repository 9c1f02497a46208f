// The editor's edits as a plain value, without an engine.
#include <gmock/gmock.h>

#include "core/shoot/EditHistory.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

ClipFiling filedIn(const QString &bin)
{
    return {.primaryBin = bin, .extraBins = {}, .reviewReason = {}};
}

EditHistory::Edit moveOf(const QUuid &clip, const QString &from, const QString &to)
{
    return {.kind = EditHistory::Kind::move,
            .bin = to,
            .changes = {{.clip = clip, .before = filedIn(from), .after = filedIn(to)}}};
}

const QUuid firstClip = QUuid::createUuid();
const QUuid otherClip = QUuid::createUuid();

} // namespace

TEST(EditHistory, AnEditIsUndoneAndRedone)
{
    EditHistory history;
    EXPECT_EQ(history.toUndo(), nullptr);
    EXPECT_EQ(history.toRedo(), nullptr);
    const auto edit = moveOf(firstClip, u"Kitchen"_s, u"Pool"_s);
    history.add(edit);
    ASSERT_NE(history.toUndo(), nullptr);
    EXPECT_EQ(*history.toUndo(), edit);
    EXPECT_THAT(history.undo(), ElementsAre(Pair(firstClip, filedIn(u"Kitchen"_s))));
    EXPECT_EQ(history.toUndo(), nullptr);
    ASSERT_NE(history.toRedo(), nullptr);
    EXPECT_EQ(*history.toRedo(), edit);
    EXPECT_THAT(history.redo(), ElementsAre(Pair(firstClip, filedIn(u"Pool"_s))));
    EXPECT_EQ(history.toRedo(), nullptr);
}

TEST(EditHistory, WithoutAnEditThereIsNothingToUndoOrRedo)
{
    EditHistory history;
    EXPECT_THAT(history.undo(), IsEmpty());
    EXPECT_THAT(history.redo(), IsEmpty());
    history.add(moveOf(firstClip, u"Kitchen"_s, u"Pool"_s));
    history.clear();
    EXPECT_EQ(history.toUndo(), nullptr);
    EXPECT_THAT(history.undo(), IsEmpty());
}

TEST(EditHistory, ANewEditDropsWhatWasUndone)
{
    EditHistory history;
    history.add(moveOf(firstClip, u"Kitchen"_s, u"Pool"_s));
    history.add(moveOf(firstClip, u"Pool"_s, u"Garage"_s));
    (void)history.undo();
    history.add(moveOf(otherClip, u"Kitchen"_s, u"Office"_s));
    EXPECT_EQ(history.toRedo(), nullptr);
    EXPECT_THAT(history.undo(), ElementsAre(Pair(otherClip, filedIn(u"Kitchen"_s))));
    EXPECT_THAT(history.undo(), ElementsAre(Pair(firstClip, filedIn(u"Kitchen"_s))));
}

TEST(EditHistory, KeepsTheLastEditsUpToItsLimit)
{
    ASSERT_GE(EditHistory::limit, 100U);
    EditHistory history;
    for (std::size_t i = 0; i < EditHistory::limit + 5; ++i) {
        history.add(moveOf(firstClip, QString::number(i), QString::number(i + 1)));
    }
    std::size_t undone = 0;
    QString bin;
    while (history.toUndo() != nullptr) {
        bin = history.undo().front().second.primaryBin;
        ++undone;
    }
    EXPECT_EQ(undone, EditHistory::limit);
    EXPECT_EQ(bin, u"5"_s);
}

TEST(EditHistory, AnEditWithoutAVisibleEffectIsNoStepAndKeepsWhatCanBeRedone)
{
    EditHistory history;
    history.add(moveOf(firstClip, u"Kitchen"_s, u"Pool"_s));
    history.add(moveOf(firstClip, u"Pool"_s, u"Garage"_s));
    (void)history.undo();
    history.add({.kind = EditHistory::Kind::confirmAll, .bin = {}, .changes = {}});
    ClipFiling confirmed = filedIn(u"Pool"_s);
    confirmed.isConfirmed = true;
    history.add({.kind = EditHistory::Kind::move,
                 .bin = u"Pool"_s,
                 .changes = {{.clip = firstClip, .before = filedIn(u"Pool"_s), .after = confirmed}}});
    EXPECT_EQ(history.toUndo()->bin, u"Pool"_s);
    EXPECT_THAT(history.redo(), ElementsAre(Pair(firstClip, filedIn(u"Garage"_s))));
    EXPECT_THAT(history.undo(), ElementsAre(Pair(firstClip, confirmed))) << "as it was when it was left";
    EXPECT_THAT(history.undo(), ElementsAre(Pair(firstClip, filedIn(u"Kitchen"_s))));
}

TEST(EditHistory, TheEditsBesideARenamedStateLeadToItAndFromIt)
{
    EditHistory history;
    history.add(moveOf(firstClip, u"Kitchen 2"_s, u"Kitchen 3"_s));
    history.add(moveOf(firstClip, u"Kitchen 3"_s, u"Pool"_s));
    (void)history.undo();
    history.amend({{.clip = firstClip, .before = filedIn(u"Kitchen 3"_s), .after = filedIn(u"Kitchen 2"_s)},
                   {.clip = otherClip, .before = filedIn(u"Kitchen 4"_s), .after = filedIn(u"Kitchen 3"_s)}},
                  {{u"Kitchen 3"_s, u"Kitchen 2"_s}, {u"Kitchen 4"_s, u"Kitchen 3"_s}});
    EXPECT_EQ(history.toUndo()->bin, u"Kitchen 2"_s);
    EXPECT_THAT(history.redo(), ElementsAre(Pair(firstClip, filedIn(u"Pool"_s)), //
                                            Pair(otherClip, filedIn(u"Kitchen 4"_s))));
    EXPECT_THAT(history.undo(), ElementsAre(Pair(firstClip, filedIn(u"Kitchen 2"_s)), //
                                            Pair(otherClip, filedIn(u"Kitchen 3"_s))));
    EXPECT_THAT(history.undo(), ElementsAre(Pair(firstClip, filedIn(u"Kitchen 2"_s)), //
                                            Pair(otherClip, filedIn(u"Kitchen 4"_s))));
}
