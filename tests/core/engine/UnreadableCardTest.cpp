// A card of which a part can't be read, and what is said of it.
#include "core/clips/ClipListing.h"
#include "core/copies/CardNote.h"
#include "tests/core/engine/CardImportFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace fs = std::filesystem;

// A card with folders that are closed to its reader.
class ClosedCardTest : public CardImportTest
{
protected:
    ClosedCardTest()
    {
        fs::create_directory(folder / "Shoots");
        fs::permissions(folder.path(), fs::perms::all);
        fs::permissions(folder / "Shoots", fs::perms::all);
    }
    ~ClosedCardTest() override
    {
        for (const fs::path &path : m_closed) {
            fs::permissions(path, fs::perms::all);
        }
    }

    void close(const fs::path &path)
    {
        fs::permissions(path, fs::perms::none);
        m_closed.push_back(path);
    }

    [[nodiscard]] bool importEnds(SortEngine &engine, StageKind stage) const
    {
        const Unprivileged user;
        engine.importCard(card(), u"CARD"_s);
        return reaches(engine, stage) && waitUntil([&] { return !engine.isCopying(); });
    }

private:
    std::vector<fs::path> m_closed;
};

TEST_F(ClosedCardTest, WhatCanBeReadIsImportedAndANoteNamesWhatCannotUntilItIsDismissed)
{
    (void)folder.write("card/DCIM/100MEDIA/kitchen 1.mov", "film");
    (void)folder.write("card/DCIM/101MEDIA/pool 2.mov", "film");
    close(folder / "card/DCIM/101MEDIA");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    int changes = 0;
    QObject::connect(&engine, &SortEngine::cardNoteChanged, [&] { ++changes; });
    ASSERT_TRUE(importEnds(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s));
    const QString note = u"Clips may be missing: “DCIM/101MEDIA” on CARD couldn't be read. Don't erase the card."_s;
    EXPECT_EQ(engine.cardNote(), note);

    engine.sortAgain();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.reset();
    EXPECT_EQ(engine.cardNote(), note) << "whatever is done next";
    engine.dismissCardNote();
    EXPECT_EQ(engine.cardNote(), QString());
    engine.dismissCardNote();
    EXPECT_EQ(changes, 2);
}

TEST_F(ClosedCardTest, ACardOfWhichNothingCanBeReadHoldsNoClipsButSaysWhy)
{
    (void)folder.write("card/DCIM/pool 2.mov", "film");
    close(folder / "card/DCIM");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    ASSERT_TRUE(importEnds(engine, StageKind::emptyFolder));
    EXPECT_EQ(engine.stage().text, u"card"_s);
    EXPECT_EQ(engine.cardNote(), u"Clips may be missing: “DCIM” on CARD couldn't be read. Don't erase the card."_s);
}

TEST_F(ClosedCardTest, ASecondCardsNoteStandsBelowTheFirsts)
{
    (void)folder.write("card/DCIM/pool 2.mov", "film");
    close(folder / "card/DCIM");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    ASSERT_TRUE(importEnds(engine, StageKind::emptyFolder));
    const QString first = engine.cardNote();
    {
        const Unprivileged user;
        engine.importCard(card(), u"OTHER"_s);
        ASSERT_TRUE(waitUntil([&] { return engine.cardNote() != first; }));
        ASSERT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
    }
    EXPECT_EQ(engine.cardNote(),
              first + u"\nClips may be missing: “DCIM” on OTHER couldn't be read. Don't erase the card."_s);
}

TEST_F(ClosedCardTest, TheFolderThatAFileSystemKeepsForItselfHoldsNoClips)
{
    (void)folder.write("card/kitchen 1.mov", "film");
    (void)folder.write("card/DCIM/lost+found/pool 2.mov", "film");
    fs::create_directory(folder / "card/lost+found");
    close(folder / "card/lost+found");
    close(folder / "card/DCIM/lost+found");
    const Unprivileged user;
    const CardListing listing = listCard(card(), {});
    EXPECT_THAT(listing.clips, ElementsAre(FileUrl(folder / "card/kitchen 1.mov")));
    EXPECT_THAT(listing.unreadable, ElementsAre(FileUrl(folder / "card/DCIM/lost+found"))) << "only at the top";
}

TEST_F(ClosedCardTest, UnreadableFoldersComeByTheirPlacesAndACardThatIsGoneIsOne)
{
    (void)folder.write("card/a/kitchen 1.mov", "film");
    std::vector<FileUrl> closed;
    for (const char *name : {"e", "b", "h", "a/c", "g", "d", "f"}) { // some file systems list by age
        closed.emplace_back(folder.write(fs::path("card") / name / "kitchen 1.mov", "film").parent_path());
    }
    for (const FileUrl &place : closed) {
        close(place.path());
    }
    std::ranges::sort(closed, {}, &FileUrl::path);
    const Unprivileged user;
    EXPECT_EQ(listCard(card(), {}).unreadable, closed);
    EXPECT_THAT(listCard(FileUrl(folder / "gone"), {}).unreadable, ElementsAre(FileUrl(folder / "gone")));
}

TEST(UnreadableNote, NamesUpToThreeFoldersByTheirPlacesOnTheCard)
{
    const FileUrl card("/media/card");
    const auto note = [&](std::initializer_list<const char *> folders) {
        return unreadableNote(card, u"CARD"_s, std::vector<FileUrl>(folders.begin(), folders.end()));
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
