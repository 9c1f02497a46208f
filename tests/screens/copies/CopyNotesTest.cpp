// The notes about copies that lack something, without the view that shows them.
#include "screens/copies/CopyNotes.h"

#include "core/copies/CopyJournal.h"
#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

using CopyEnd = UnfinishedCopy::End;
using CopyNotesTest = ModelTest;

UnfinishedCopy stoppedCopy(CopyKind kind, std::initializer_list<const char *> files)
{
    UnfinishedCopy copy{.kind = kind,
                        .name = u"CARD"_s,
                        .folder = FileUrl("/Shoots/CARD — 2026-05-04 (unfinished)"),
                        .end = CopyEnd::stopped};
    for (const char *const file : files) {
        copy.files.push_back({FileUrl(file), {}});
    }
    return copy;
}

} // namespace

TEST(UnreadableNote, NamesUpToThreeFoldersByTheirPlacesOnTheCard)
{
    const auto note = [](std::initializer_list<const char *> folders) {
        return CopyNotes::of(UnreadableCard{.place = FileUrl("/media/card"),
                                            .name = u"CARD"_s,
                                            .folders = std::vector<FileUrl>(folders.begin(), folders.end())});
    };
    EXPECT_EQ(note({"/media/card/DCIM/101"}),
              u"Clips may be missing: “DCIM/101” on CARD couldn't be read. Don't erase the card."_s);
    EXPECT_EQ(note({"/media/card/a", "/media/card/b"}),
              u"Clips may be missing: “a” and “b” on CARD couldn't be read. Don't erase the card."_s);
    EXPECT_EQ(note({"/media/card/a", "/media/card/b", "/media/card/c"}),
              u"Clips may be missing: “a”, “b” and “c” on CARD couldn't be read. Don't erase the card."_s);
    EXPECT_EQ(note({"/media/card/a", "/media/card/b", "/media/card/c", "/media/card/d"}),
              u"Clips may be missing: “a”, “b”, “c” and 1 more on CARD couldn't be read. Don't erase the card."_s);
    EXPECT_EQ(note({"/media/card/a", "/media/card/b", "/media/card/c", "/media/card/d", "/media/card/e"}),
              u"Clips may be missing: “a”, “b”, “c” and 2 more on CARD couldn't be read. Don't erase the card."_s);
    EXPECT_EQ(note({"/media/card"}), u"Clips may be missing: CARD couldn't be read. Don't erase the card."_s);
    EXPECT_EQ(note({"/media/card/50% %1 %2"}),
              u"Clips may be missing: “50% %1 %2” on CARD couldn't be read. Don't erase the card."_s);
}

TEST(UnfinishedNote, NamesUpToFiveFilesOfACardAndSaysNotToEraseIt)
{
    const auto note = [](std::initializer_list<const char *> files) {
        return CopyNotes::of(stoppedCopy(CopyKind::card, files));
    };
    EXPECT_EQ(note({"/card/a.mov"}),
              u"The copy of CARD was stopped: “a.mov” isn't in “CARD — 2026-05-04 (unfinished)”. "
              u"Don't erase the card."_s);
    EXPECT_EQ(note({"/card/a.mov", "/card/DCIM/b.mov"}),
              u"The copy of CARD was stopped: “a.mov” and “b.mov” aren't in “CARD — 2026-05-04 (unfinished)”. "
              u"Don't erase the card."_s);
    EXPECT_EQ(note({"1", "2", "3", "4", "5"}),
              u"The copy of CARD was stopped: “1”, “2”, “3”, “4” and “5” aren't in “CARD — 2026-05-04 (unfinished)”. "
              u"Don't erase the card."_s);
    EXPECT_EQ(note({"1", "2", "3", "4", "5", "6"}),
              u"The copy of CARD was stopped: “1”, “2”, “3”, “4”, “5” and 1 more aren't in “CARD — 2026-05-04 "
              u"(unfinished)”. Don't erase the card."_s);
    EXPECT_EQ(note({"1", "2", "3", "4", "5", "6", "7"}),
              u"The copy of CARD was stopped: “1”, “2”, “3”, “4”, “5” and 2 more aren't in “CARD — 2026-05-04 "
              u"(unfinished)”. Don't erase the card."_s);
}

TEST(UnfinishedNote, OfAnExportSaysWhereTheOriginalsAre)
{
    EXPECT_EQ(CopyNotes::of(stoppedCopy(CopyKind::copy, {"/a.mov", "/b.mov"})),
              u"The copy of CARD into folders was stopped: “a.mov” and “b.mov” weren't copied. Your originals are "
              u"untouched."_s);
    EXPECT_EQ(CopyNotes::of(stoppedCopy(CopyKind::copy, {"/a.mov"})),
              u"The copy of CARD into folders was stopped: “a.mov” wasn't copied. Your originals are untouched."_s);
    EXPECT_EQ(CopyNotes::of(stoppedCopy(CopyKind::move, {"/a.mov", "/b.mov"})),
              u"The move of CARD into folders was stopped: “a.mov” and “b.mov” weren't moved and are still where they "
              u"were."_s);
    EXPECT_EQ(CopyNotes::of(stoppedCopy(CopyKind::move, {"/a.mov"})),
              u"The move of CARD into folders was stopped: “a.mov” wasn't moved and is still where it was."_s);
}

TEST(UnfinishedNote, AFailureInTheLastMomentIsGivenInItsOwnWords)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::move, {"/a.mov", "/b.mov"});
    copy.failure = u"1 file didn't copy cleanly (a.mov) — nothing was deleted from the source."_s;
    EXPECT_EQ(CopyNotes::of(copy), u"The move of CARD into folders was stopped: 1 file didn't copy cleanly (a.mov) — "
                                   u"nothing was deleted from the source."_s);
}

TEST(UnfinishedNote, AKilledCopyWasCutOff)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::card, {"/a.mov"});
    copy.end = CopyEnd::cutOff;
    EXPECT_EQ(CopyNotes::of(copy), u"The copy of CARD was cut off: “a.mov” isn't in “CARD — 2026-05-04 (unfinished)”. "
                                   u"Don't erase the card."_s);
    copy.kind = CopyKind::move;
    EXPECT_EQ(CopyNotes::of(copy), u"The move of CARD into folders was cut off, and its event wasn't written. Open it "
                                   u"from Projects and export it again."_s);
    copy.kind = CopyKind::copy;
    EXPECT_EQ(CopyNotes::of(copy), u"The copy of CARD into folders was cut off, and its event wasn't written. Open it "
                                   u"from Projects and export it again."_s);
}

TEST(UnfinishedNote, OfACardWithoutAFirstFileSaysThatNothingWasCopied)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::card, {"/a.mov", "/b.mov"});
    copy.end = CopyEnd::notBegun;
    EXPECT_EQ(CopyNotes::of(copy),
              u"The copy of CARD was stopped before its first file: nothing of it was copied. Don't erase the card."_s);
    copy.end = CopyEnd::cutOffBeforeItBegan;
    copy.files.clear();
    EXPECT_EQ(CopyNotes::of(copy),
              u"The copy of CARD was cut off before its first file: nothing of it was copied. Don't erase the card."_s);
}

TEST(UnfinishedNote, AMarkerInANameIsShownAsItIs)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::card, {"/%1 %2.mov", "/%4.mov"});
    copy.name = u"50%2"_s;
    EXPECT_EQ(CopyNotes::of(copy), u"The copy of 50%2 was stopped: “%1 %2.mov” and “%4.mov” aren't in “CARD — "
                                   u"2026-05-04 (unfinished)”. Don't erase the card."_s);
    copy.kind = CopyKind::move;
    EXPECT_EQ(CopyNotes::of(copy), u"The move of 50%2 into folders was stopped: “%1 %2.mov” and “%4.mov” weren't moved "
                                   u"and are still where they were."_s);
}

TEST(UnfinishedNote, ANameFromRightToLeftTurnsNothingAroundIt)
{
    const QString house = u"בית"_s;
    const QString isolated = u'\u2068' + house + u'\u2069';
    UnfinishedCopy copy = stoppedCopy(CopyKind::card, {"/בית"});
    copy.name = house;
    copy.folder = FileUrl("/Shoots/בית");
    EXPECT_EQ(CopyNotes::of(copy),
              u"The copy of %1 was stopped: “%1” isn't in “%1”. Don't erase the card."_s.arg(isolated));
    copy.kind = CopyKind::move;
    EXPECT_EQ(CopyNotes::of(copy),
              u"The move of %1 into folders was stopped: “%1” wasn't moved and is still where it was."_s.arg(isolated));
    copy.failure = house;
    EXPECT_EQ(CopyNotes::of(copy), u"The move of %1 into folders was stopped: %1"_s.arg(isolated));
    copy.end = CopyEnd::notBegun;
    EXPECT_EQ(CopyNotes::of(copy), u"The copy of %1 was stopped before its first file: nothing of it was copied. Don't "
                                   u"erase the card."_s.arg(isolated));
    UnreadableCard card{.place = FileUrl("/media/card"), .name = house, .folders = {FileUrl("/media/card/בית")}};
    EXPECT_EQ(CopyNotes::of(card),
              u"Clips may be missing: “%1” on %1 couldn't be read. Don't erase the card."_s.arg(isolated));
    card.folders = {card.place};
    EXPECT_EQ(CopyNotes::of(card), u"Clips may be missing: %1 couldn't be read. Don't erase the card."_s.arg(isolated));
}

TEST_F(CopyNotesTest, EachUnreadableCardHasALineUntilTheyAreDismissed)
{
    CopyNotes notes;
    EXPECT_EQ(notes.unreadable(), QString()) << "without an engine";
    notes.setEngine(&engine);
    EXPECT_EQ(notes.unreadable(), QString());
    QStringList shown; // each text that a view would show
    QObject::connect(&notes, &CopyNotes::changed, [&] { shown << notes.unreadable(); });
    engine.setImportRoot(shoot);
    const QString first = u"Clips may be missing: FIRST couldn't be read. Don't erase the card."_s;
    const QString both = first + u"\nClips may be missing: SECOND couldn't be read. Don't erase the card."_s;
    engine.importCard(FileUrl(folder / "gone"), u"FIRST"_s);
    ASSERT_TRUE(waitUntil([&] { return notes.unreadable() == first; }));
    engine.importCard(FileUrl(folder / "gone"), u"SECOND"_s);
    ASSERT_TRUE(waitUntil([&] { return notes.unreadable() == both; }));
    engine.dismissUnreadableCards();
    EXPECT_EQ(shown, QStringList({first, both, QString()}));
}

TEST_F(CopyNotesTest, EachUnfinishedCopyHasALineUntilTheyAreDismissed)
{
    const CopyJournal journal(folder / "journal");
    for (const CopyKind kind : {CopyKind::copy, CopyKind::move}) {
        CopyJournal::Entry entry = journal.begin({});
        entry.keep(stoppedCopy(kind, {"/a.mov"}));
    }
    SortSeams parts = seams();
    parts.copyJournal = folder / "journal";
    SortEngine next(parts);
    CopyNotes notes;
    EXPECT_EQ(notes.unfinished(), QString()) << "without an engine";
    notes.setEngine(&next);
    QStringList shown;
    QObject::connect(&notes, &CopyNotes::changed, [&] { shown << notes.unfinished(); });
    const QString first =
        u"The copy of CARD into folders was stopped: “a.mov” wasn't copied. Your originals are untouched."_s;
    const QString both =
        first + u"\nThe move of CARD into folders was stopped: “a.mov” wasn't moved and is still where it was."_s;
    ASSERT_TRUE(waitUntil([&] { return notes.unfinished() == both; }));
    next.dismissUnfinishedCopies();
    EXPECT_EQ(shown, QStringList({first, both, QString()}));
}
