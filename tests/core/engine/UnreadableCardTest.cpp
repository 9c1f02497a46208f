// A card of which a part can't be read.
#include "core/copies/UnreadableCard.h"
#include "core/clips/ClipListing.h"
#include "tests/core/engine/CardImportFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

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

    // The card, of which this one of its folders is closed.
    UnreadableCard closedAt(const fs::path &place, const QString &name = u"CARD"_s) const
    {
        return {.place = card(), .name = name, .folders = {FileUrl(card().path() / place)}};
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

TEST_F(ClosedCardTest, WhatCanBeReadIsImportedAndWhatCannotIsKnownUntilItIsDismissed)
{
    (void)folder.write("card/DCIM/100MEDIA/kitchen 1.mov", "film");
    (void)folder.write("card/DCIM/101MEDIA/pool 2.mov", "film");
    close(folder / "card/DCIM/101MEDIA");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    int changes = 0;
    QObject::connect(&engine, &SortEngine::unreadableCardsChanged, [&] { ++changes; });
    ASSERT_TRUE(importEnds(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s));
    EXPECT_THAT(engine.unreadableCards(), ElementsAre(closedAt("DCIM/101MEDIA")));

    engine.sortAgain();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.reset();
    EXPECT_THAT(engine.unreadableCards(), ElementsAre(closedAt("DCIM/101MEDIA"))) << "whatever is done next";
    engine.dismissUnreadableCards();
    EXPECT_THAT(engine.unreadableCards(), IsEmpty());
    engine.dismissUnreadableCards();
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
    EXPECT_THAT(engine.unreadableCards(), ElementsAre(closedAt("DCIM")));
}

TEST_F(ClosedCardTest, ASecondCardComesAfterTheFirst)
{
    (void)folder.write("card/DCIM/pool 2.mov", "film");
    close(folder / "card/DCIM");
    SortEngine engine(importingSeams());
    engine.setImportRoot(shoots());
    ASSERT_TRUE(importEnds(engine, StageKind::emptyFolder));
    {
        const Unprivileged user;
        engine.importCard(card(), u"OTHER"_s);
        ASSERT_TRUE(waitUntil([&] { return engine.unreadableCards().size() == 2; }));
        ASSERT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
    }
    EXPECT_THAT(engine.unreadableCards(), ElementsAre(closedAt("DCIM"), closedAt("DCIM", u"OTHER"_s)));
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
