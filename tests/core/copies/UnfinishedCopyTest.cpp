// Copies that ended before their last file, and what is kept of them.
#include <gmock/gmock.h>

#include "core/copies/CardFolder.h"
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

    // A copy of the card, of which these files count.
    UnfinishedCopy cardOf(const std::vector<std::string> &names) const
    {
        UnfinishedCopy copy{.name = u"CARD"_s, .folder = FileUrl(dated)};
        for (const std::string &name : names) {
            copy.files.push_back({FileUrl(card / name), {}});
        }
        return copy;
    }

    // The card's copy as it is told.
    UnfinishedCopy leftOut(const std::vector<std::string> &names, LeftEnd end, const fs::path &place) const
    {
        UnfinishedCopy copy = cardOf(names);
        copy.end = end;
        copy.folder = FileUrl(place);
        return copy;
    }

    ClipFiles alone(const fs::path &name) const { return {FileUrl(card / name), {}}; }

    // Begins a copy of which nothing more is heard, as of a killed program.
    void dieDuring(const UnfinishedCopy &copy) const { (void)CopyJournal(journal).begin(copy); }

    // Returns the copies of which the next start tells.
    std::vector<UnfinishedCopy> toldNext() const
    {
        auto next = copies();
        for (const auto &kept : next.leftBehind()) {
            next.add(kept);
        }
        return next.copies();
    }

    const TempFolder folder;
    const fs::path card = folder / "card";
    const fs::path journal = folder / "data/Copies";
    const fs::path dated = folder / "Shoots/CARD — 2026-05-04";
    const fs::path marked = folder / "Shoots/CARD — 2026-05-04 (unfinished)";
};

} // namespace

TEST(UnfinishedCopy, ComesBackFromItsTextAsItWas)
{
    const std::vector<Sidecar> sidecars{{FileUrl("/card/GL01.LRV"), "GL", ".LRV"},
                                        {FileUrl("/card/aM01.XML"), "", "M01.XML"}};
    const FileUrl inLatin1("/card/K\xFC"
                           "che.mov");
    UnfinishedCopy copy{.kind = CopyKind::move,
                        .name = u"CARD"_s,
                        .folder = FileUrl("/Shoots/CARD — 2026-05-04 (unfinished)"),
                        .files = {{FileUrl("/card/a.mov"), sidecars}, {inLatin1, {}}},
                        .end = LeftEnd::stopped,
                        .failure = u"“no”"_s};
    EXPECT_EQ(unfinishedCopyOf(jsonOf(copy)), copy);
    copy = {.folder = FileUrl("/Shoots")};
    EXPECT_EQ(unfinishedCopyOf(jsonOf(copy)), copy);
    for (const QByteArray text :
         {"", "{}", "[]", R"({"kind":"card","end":"none"})", R"({"kind":"fax","end":"none","folder":"/a"})",
          R"({"kind":"card","end":"soon","folder":"/a"})"}) {
        EXPECT_EQ(unfinishedCopyOf(text), std::nullopt) << text.toStdString();
    }
}

TEST_F(UnfinishedCopiesTest, AStoppedCardIsMarkedAndTheFilesThatAreNotInItAreToldUntilItIsDismissed)
{
    (void)folder.write(dated / "a.mov", "a");
    const auto copy = cardOf({"a.mov", "b.mov", "c.mov"});
    auto kept = copies();
    auto entry = kept.journal().begin(copy);
    const auto stopped = kept.stopCard(entry, copy, UnfinishedCopies::FolderName::marked);
    ASSERT_TRUE(stopped);
    EXPECT_THAT(entriesOf(marked), ElementsAre("a.mov"));
    EXPECT_FALSE(fs::exists(dated));

    const UnfinishedCopy left = leftOut({"b.mov", "c.mov"}, LeftEnd::stopped, marked);
    EXPECT_EQ(stopped->copy, left);
    kept.add(*stopped);
    EXPECT_THAT(kept.copies(), ElementsAre(left));
    EXPECT_THAT(toldNext(), ElementsAre(left));
    EXPECT_THAT(toldNext(), ElementsAre(left)) << "at every start";
    EXPECT_THAT(entriesOf(folder / "Shoots"), ElementsAre(marked.filename())) << "which rename nothing more";
    kept.dismiss();
    EXPECT_THAT(kept.copies(), IsEmpty());
    EXPECT_THAT(toldNext(), IsEmpty());
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

TEST_F(UnfinishedCopiesTest, AFolderWhoseNameIsToStayIsOnlyTold)
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
    const UnfinishedCopy left = leftOut({"b.mov"}, LeftEnd::cutOff, marked);
    EXPECT_THAT(toldNext(), ElementsAre(left));
    EXPECT_TRUE(fs::exists(marked));
    EXPECT_THAT(toldNext(), ElementsAre(left));
    EXPECT_THAT(entriesOf(folder / "Shoots"), ElementsAre(marked.filename()));
}

TEST_F(UnfinishedCopiesTest, AKilledCopyThatHadItsLastFileIsComplete)
{
    (void)folder.write(dated / "a.mov", "a");
    dieDuring(cardOf({"a.mov"}));
    EXPECT_THAT(toldNext(), IsEmpty());
    EXPECT_TRUE(fs::exists(dated));
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, AKilledCopyIsForgottenWithItsFolderAndWaitsForADiskThatIsOut)
{
    dieDuring(cardOf({"a.mov"}));
    fs::rename(folder / "Shoots", folder / "out");
    EXPECT_THAT(toldNext(), IsEmpty());
    EXPECT_THAT(entriesOf(journal), SizeIs(1));
    fs::rename(folder / "out", folder / "Shoots");
    fs::remove(dated);
    EXPECT_THAT(toldNext(), IsEmpty());
    EXPECT_THAT(entriesOf(journal), IsEmpty());
}

TEST_F(UnfinishedCopiesTest, AKilledExportIsTold)
{
    UnfinishedCopy copy = cardOf({"a.mov"});
    copy.kind = CopyKind::copy;
    dieDuring(copy);
    copy.end = LeftEnd::cutOff;
    EXPECT_THAT(toldNext(), ElementsAre(copy));
    EXPECT_THAT(toldNext(), ElementsAre(copy));
    EXPECT_TRUE(fs::exists(dated));
}

TEST_F(UnfinishedCopiesTest, AStoppedExportIsToldWithWhatItLeftOut)
{
    UnfinishedCopy copy = cardOf({"a.mov"});
    copy.kind = CopyKind::move;
    auto entry = CopyJournal(journal).begin(copy);
    ASSERT_TRUE(UnfinishedCopies::stopExport(entry, copy));
    UnfinishedCopy left = copy;
    left.end = LeftEnd::stopped;
    EXPECT_THAT(toldNext(), ElementsAre(left));
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
    QStringList names;
    for (const UnfinishedCopy &copy : toldNext()) {
        names << copy.name;
    }
    EXPECT_EQ(names, QStringList({u"A"_s, u"B"_s, u"C"_s}));
}

TEST_F(UnfinishedCopiesTest, WithoutAJournalACopyIsToldAsLongAsTheProgramRuns)
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
        EXPECT_THAT(kept.copies(), SizeIs(1));
        kept.dismiss();
        EXPECT_THAT(kept.leftBehind(), IsEmpty());
    }
    fs::permissions(folder / "locked", fs::perms::all);
}

TEST_F(UnfinishedCopiesTest, DismissingForgetsEveryCopy)
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
    EXPECT_THAT(toldNext(), ElementsAre(leftOut({"b.mov"}, LeftEnd::cutOff, marked)));
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
