// Copies that ended before their last file: what is kept of them, and what is said.
#include <gmock/gmock.h>

#include "core/copies/CardFolder.h"
#include "core/copies/CardNote.h"
#include "core/copies/UnfinishedCopies.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

using LeftEnd = UnfinishedCopy::End;

namespace {

UnfinishedCopy stoppedCopy(CopyKind kind, std::initializer_list<const char *> files)
{
    UnfinishedCopy copy{.kind = kind,
                        .name = u"CARD"_s,
                        .folder = FileUrl("/Shoots/CARD — 2026-05-04 (unfinished)"),
                        .end = LeftEnd::stopped};
    for (const char *const file : files) {
        copy.files.push_back({FileUrl(file), {}});
    }
    return copy;
}

std::vector<fs::path> entriesOf(const fs::path &folder)
{
    std::vector<fs::path> names;
    for (const auto &entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    std::ranges::sort(names);
    return names;
}

// A Shoots folder, and a journal as the program keeps it.
class UnfinishedCopiesTest : public testing::Test
{
protected:
    UnfinishedCopiesTest() { fs::create_directories(dated); }

    // As the importer names copies: the file's own name, or that with a number.
    static std::vector<FileUrl> placesOf(const FileUrl &file, const FileUrl &folder)
    {
        std::vector<FileUrl> places;
        const fs::path name = file.path().filename();
        for (int n = 1; n < 10; ++n) {
            const std::string number = n == 1 ? "" : " " + std::to_string(n);
            const fs::path place = folder.path() / (name.stem().native() + number + name.extension().native());
            if (fs::exists(place)) {
                places.emplace_back(place);
            }
        }
        return places;
    }

    UnfinishedCopies copies() const { return {CopyJournal(journal), placesOf}; }

    UnfinishedCopy cardOf(const std::vector<std::string> &names) const
    {
        UnfinishedCopy copy{.name = u"CARD"_s, .folder = FileUrl(dated)};
        for (const std::string &name : names) {
            copy.files.push_back({FileUrl(card / name), {}});
        }
        return copy;
    }

    ClipFiles alone(const fs::path &name) const { return {FileUrl(card / name), {}}; }

    // Begins a copy of which nothing more is heard, as of a killed program.
    void dieDuring(const UnfinishedCopy &copy) const { (void)CopyJournal(journal).begin(copy); }

    // The note of the next start, dismissed or not.
    QString nextNote() const
    {
        auto next = copies();
        for (const auto &kept : next.leftBehind()) {
            next.add(kept);
        }
        return next.note();
    }

    const TempFolder folder;
    const fs::path card = folder / "card";
    const fs::path journal = folder / "data/Copies";
    const fs::path dated = folder / "Shoots/CARD — 2026-05-04";
    const fs::path marked = folder / "Shoots/CARD — 2026-05-04 (unfinished)";
};

} // namespace

TEST(UnfinishedNote, NamesUpToFiveFilesOfACardAndSaysNotToEraseIt)
{
    const auto note = [](std::initializer_list<const char *> files) {
        return unfinishedNote(stoppedCopy(CopyKind::card, files));
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
    EXPECT_EQ(unfinishedNote(stoppedCopy(CopyKind::copy, {"/a.mov", "/b.mov"})),
              u"The copy of CARD into folders was stopped: “a.mov” and “b.mov” weren't copied. Your originals are "
              u"untouched."_s);
    EXPECT_EQ(unfinishedNote(stoppedCopy(CopyKind::copy, {"/a.mov"})),
              u"The copy of CARD into folders was stopped: “a.mov” wasn't copied. Your originals are untouched."_s);
    EXPECT_EQ(unfinishedNote(stoppedCopy(CopyKind::move, {"/a.mov", "/b.mov"})),
              u"The move of CARD into folders was stopped: “a.mov” and “b.mov” weren't moved and are still where they "
              u"were."_s);
    EXPECT_EQ(unfinishedNote(stoppedCopy(CopyKind::move, {"/a.mov"})),
              u"The move of CARD into folders was stopped: “a.mov” wasn't moved and is still where it was."_s);
}

TEST(UnfinishedNote, AFailureInTheLastMomentIsGivenInItsOwnWords)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::move, {"/a.mov", "/b.mov"});
    copy.failure = u"1 file didn't copy cleanly (a.mov) — nothing was deleted from the source."_s;
    EXPECT_EQ(unfinishedNote(copy), u"The move of CARD into folders was stopped: 1 file didn't copy cleanly (a.mov) — "
                                    u"nothing was deleted from the source."_s);
}

TEST(UnfinishedNote, AKilledCopyWasCutOff)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::card, {"/a.mov"});
    copy.end = LeftEnd::cutOff;
    EXPECT_EQ(unfinishedNote(copy), u"The copy of CARD was cut off: “a.mov” isn't in “CARD — 2026-05-04 (unfinished)”. "
                                    u"Don't erase the card."_s);
    copy.kind = CopyKind::move;
    EXPECT_EQ(unfinishedNote(copy), u"The move of CARD into folders was cut off, and its event wasn't written. Open it "
                                    u"from Projects and export it again."_s);
}

TEST(UnfinishedCopy, ComesBackFromItsTextAsItWas)
{
    UnfinishedCopy copy = stoppedCopy(CopyKind::move, {"/card/a.mov", "/card/K\xFC"
                                                                      "che.mov"});
    copy.failure = u"“no”"_s;
    copy.files[0].sidecars = {{FileUrl("/card/GL01.LRV"), "GL", ".LRV"}, {FileUrl("/card/aM01.XML"), "", "M01.XML"}};
    EXPECT_EQ(unfinishedCopyOf(jsonOf(copy)), copy);
    copy = {.folder = FileUrl("/Shoots")};
    EXPECT_EQ(unfinishedCopyOf(jsonOf(copy)), copy);
    for (const QByteArray text :
         {"", "{}", "[]", R"({"kind":"card","end":"none"})", R"({"kind":"fax","end":"none","folder":"/a"})",
          R"({"kind":"card","end":"soon","folder":"/a"})"}) {
        EXPECT_EQ(unfinishedCopyOf(text), std::nullopt) << text.toStdString();
    }
}

TEST_F(UnfinishedCopiesTest, AStoppedCardIsMarkedAndTheFilesThatAreNotInItAreNamedUntilTheNoteIsDismissed)
{
    (void)folder.write(dated / "a.mov", "a");
    const auto copy = cardOf({"a.mov", "b.mov", "c.mov"});
    auto kept = copies();
    auto entry = kept.journal().begin(copy);
    const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::marked);
    ASSERT_TRUE(stopped);
    EXPECT_EQ(stopped->copy.folder, FileUrl(marked));
    EXPECT_THAT(stopped->copy.files, ElementsAre(alone("b.mov"), alone("c.mov")));
    EXPECT_THAT(entriesOf(marked), ElementsAre("a.mov"));
    EXPECT_FALSE(fs::exists(dated));

    const QString note = u"The copy of CARD was stopped: “b.mov” and “c.mov” aren't in “CARD — 2026-05-04 "
                         u"(unfinished)”. Don't erase the card."_s;
    kept.add(*stopped);
    EXPECT_EQ(kept.note(), note);
    EXPECT_EQ(nextNote(), note);
    EXPECT_EQ(nextNote(), note) << "at every start";
    EXPECT_THAT(entriesOf(folder / "Shoots"), ElementsAre(marked.filename())) << "which rename nothing more";
    kept.dismiss();
    EXPECT_EQ(kept.note(), QString());
    EXPECT_EQ(nextNote(), QString());
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, AStoppedCardOfWhichNothingIsMissingIsLeftAlone)
{
    (void)folder.write(dated / "a.mov", "a");
    const auto copy = cardOf({"a.mov"});
    const auto kept = copies();
    auto entry = kept.journal().begin(copy);
    EXPECT_FALSE(kept.stopCard(entry, copy, UnfinishedCopies::FolderName::marked));
    EXPECT_TRUE(fs::exists(dated));
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, AFolderWhoseNameIsToStayIsOnlyNamedInTheNote)
{
    const auto copy = cardOf({"a.mov"});
    const auto kept = copies();
    auto entry = kept.journal().begin(copy);
    const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::kept);
    ASSERT_TRUE(stopped);
    EXPECT_EQ(stopped->copy.folder, FileUrl(dated));
    EXPECT_THAT(entriesOf(folder / "Shoots"), ElementsAre(dated.filename()));
}

TEST_F(UnfinishedCopiesTest, FilesOfOneNameAreToldApartByTheirNumbersInTheOrderOfTheCopy)
{
    // Copied so far: "a 2.mov" of the card itself, then the first "a.mov".
    (void)folder.write(dated / "a 2.mov", "x");
    (void)folder.write(dated / "a.mov", "x");
    const auto copy = cardOf({"100/a 2.mov", "100/a.mov", "101/a.mov"});
    const auto kept = copies();
    auto entry = kept.journal().begin(copy);
    const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::marked);
    ASSERT_TRUE(stopped);
    EXPECT_THAT(stopped->copy.files, ElementsAre(alone("101/a.mov")));
}

TEST_F(UnfinishedCopiesTest, ASidecarThatIsNotBesideItsClipIsMissingAndOneOfAMissingClipIsNotNamed)
{
    for (const char *const name : {"a.mov", "aM01.XML", "a 2.mov", "a 2.THM"}) {
        (void)folder.write(dated / name, "x");
    }
    auto copy = cardOf({"100/a.mov", "101/a.mov", "101/b.mov"});
    const Sidecar metadata{FileUrl(card / "101/aM01.XML"), "", "M01.XML"};
    copy.files[0].sidecars = {{FileUrl(card / "100/aM01.XML"), "", "M01.XML"}};
    copy.files[1].sidecars = {{FileUrl(card / "101/a.THM"), "", ".THM"}, metadata};
    copy.files[2].sidecars = {{FileUrl(card / "101/b.THM"), "", ".THM"}};
    const auto kept = copies();
    auto entry = kept.journal().begin(copy);
    const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::marked);
    ASSERT_TRUE(stopped);
    EXPECT_THAT(stopped->copy.files, ElementsAre(ClipFiles{metadata.url, {}}, alone("101/b.mov")));
}

TEST_F(UnfinishedCopiesTest, TheNextStartMarksTheFolderOfAKilledCopyAndTellsOfIt)
{
    (void)folder.write(dated / "a.mov", "a");
    (void)folder.write(dated / ".larkspan-0123456789abcdef.partial", "half");
    dieDuring(cardOf({"a.mov", "b.mov"}));
    const QString note = u"The copy of CARD was cut off: “b.mov” isn't in “CARD — 2026-05-04 (unfinished)”. Don't "
                         u"erase the card."_s;
    EXPECT_EQ(nextNote(), note);
    EXPECT_TRUE(fs::exists(marked));
    EXPECT_EQ(nextNote(), note);
    EXPECT_THAT(entriesOf(folder / "Shoots"), ElementsAre(marked.filename()));
}

TEST_F(UnfinishedCopiesTest, AKilledCopyThatHadItsLastFileIsComplete)
{
    (void)folder.write(dated / "a.mov", "a");
    dieDuring(cardOf({"a.mov"}));
    EXPECT_EQ(nextNote(), QString());
    EXPECT_TRUE(fs::exists(dated));
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, AKilledCopyIsForgottenWithItsFolderAndWaitsForADiskThatIsOut)
{
    dieDuring(cardOf({"a.mov"}));
    fs::rename(folder / "Shoots", folder / "out");
    EXPECT_EQ(nextNote(), QString());
    EXPECT_THAT(entriesOf(journal), SizeIs(1));
    fs::rename(folder / "out", folder / "Shoots");
    fs::remove(dated);
    EXPECT_EQ(nextNote(), QString());
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, AKilledExportIsTold)
{
    UnfinishedCopy copy = cardOf({"a.mov"});
    copy.kind = CopyKind::copy;
    dieDuring(copy);
    const QString note = u"The copy of CARD into folders was cut off, and its event wasn't written. Open it from "
                         u"Projects and export it again."_s;
    EXPECT_EQ(nextNote(), note);
    EXPECT_EQ(nextNote(), note);
    EXPECT_TRUE(fs::exists(dated));
}

TEST_F(UnfinishedCopiesTest, AStoppedExportIsToldWithWhatItLeftOut)
{
    UnfinishedCopy copy = cardOf({"a.mov"});
    copy.kind = CopyKind::move;
    auto entry = CopyJournal(journal).begin(copy);
    ASSERT_TRUE(UnfinishedCopies::stopExport(entry, copy));
    EXPECT_EQ(nextNote(), unfinishedNote(stoppedCopy(CopyKind::move, {"a.mov"})));
    copy.files.clear();
    entry = CopyJournal(journal).begin(copy);
    EXPECT_FALSE(UnfinishedCopies::stopExport(entry, copy));
    EXPECT_THAT(entriesOf(journal), SizeIs(1));
}

TEST_F(UnfinishedCopiesTest, CopiesAreToldInTheOrderInWhichTheyBegan)
{
    for (const auto &name : {u"A"_s, u"B"_s, u"C"_s}) {
        UnfinishedCopy copy = cardOf({"a.mov"});
        copy.name = name;
        auto entry = CopyJournal(journal).begin(copy);
        ASSERT_TRUE(copies().stopCard(entry, copy, UnfinishedCopies::FolderName::kept));
    }
    const QStringList lines = nextNote().split(u'\n');
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_TRUE(lines[0].startsWith(u"The copy of A "_s));
    EXPECT_TRUE(lines[1].startsWith(u"The copy of B "_s));
    EXPECT_TRUE(lines[2].startsWith(u"The copy of C "_s));
}

TEST_F(UnfinishedCopiesTest, WithoutAJournalTheNoteLastsAsLongAsTheProgram)
{
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "Shoots", fs::perms::all);
    (void)folder.write("locked/keep");
    fs::permissions(folder / "locked", fs::perms::none);
    for (const fs::path &place : {fs::path(), folder / "locked/Copies"}) {
        fs::create_directories(dated);
        fs::permissions(dated, fs::perms::all);
        const Unprivileged user;
        UnfinishedCopies kept(CopyJournal(place), placesOf);
        const auto copy = cardOf({"a.mov"});
        auto entry = kept.journal().begin(copy);
        const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::marked);
        ASSERT_TRUE(stopped);
        kept.add(*stopped);
        EXPECT_FALSE(kept.note().isEmpty());
        kept.dismiss();
        EXPECT_THAT(kept.leftBehind(), IsEmpty());
    }
    fs::permissions(folder / "locked", fs::perms::all);
}

TEST_F(UnfinishedCopiesTest, DismissingTheNoteForgetsEveryCopyInIt)
{
    auto kept = copies();
    const auto copy = cardOf({"a.mov"});
    for (int i = 0; i < 2; ++i) {
        auto entry = kept.journal().begin(copy);
        const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::kept);
        ASSERT_TRUE(stopped);
        kept.add(*stopped);
    }
    ASSERT_THAT(entriesOf(journal), SizeIs(2));
    kept.dismiss();
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, ADiskThatIsOutHidesNoOtherCopy)
{
    UnfinishedCopy onDiskThatIsOut = cardOf({"a.mov"});
    onDiskThatIsOut.folder = FileUrl(folder / "unplugged/Shoots/CARD");
    dieDuring(onDiskThatIsOut);
    dieDuring(cardOf({"b.mov"}));
    EXPECT_EQ(nextNote(), u"The copy of CARD was cut off: “b.mov” isn't in “CARD — 2026-05-04 (unfinished)”. Don't "
                          u"erase the card."_s);
    EXPECT_THAT(entriesOf(journal), SizeIs(2));
}

TEST_F(UnfinishedCopiesTest, MarkingTakesAFreeNameAndReplacesNothing)
{
    (void)folder.write(dated / "a.mov", "a");
    (void)folder.write(marked, "somebody's file");
    fs::create_directories(marked.native() + " (2)");
    const FileUrl third(marked.native() + " (3)");
    EXPECT_EQ(markUnfinished(FileUrl(dated)), third);
    EXPECT_THAT(entriesOf(third.path()), ElementsAre("a.mov"));
    EXPECT_EQ(markUnfinished(FileUrl(third.path() / "")), FileUrl(third.path().native() + " (unfinished)"))
        << "with or without a slash";
}

TEST_F(UnfinishedCopiesTest, AFolderThatCannotBeRenamedKeepsItsName)
{
    fs::permissions(folder.path(), fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    fs::permissions(folder / "Shoots", fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    {
        const Unprivileged user;
        EXPECT_EQ(markUnfinished(FileUrl(dated)), FileUrl(dated));
    }
    EXPECT_TRUE(fs::exists(dated));
    const FileUrl gone(folder / "gone");
    EXPECT_EQ(markUnfinished(gone), gone);
    const fs::path longest = folder / std::string(250, 'x');
    fs::create_directory(longest);
    EXPECT_EQ(markUnfinished(FileUrl(longest)), FileUrl(longest)) << "no name is as long as that";
}
