// A card's import that ends before its first file: something else begins, or the program is killed.
#include <thread>

#include "core/copies/UnfinishedCopies.h"
#include "tests/core/engine/CardImportFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

using Told = std::vector<UnfinishedCopy>;

// One card's copy that had no first file.
testing::Matcher<const Told &> nothingCopied(UnfinishedCopy::End end)
{
    return ElementsAre(AllOf(Field(&UnfinishedCopy::kind, CopyKind::card), Field(&UnfinishedCopy::name, u"CARD"_s),
                             Field(&UnfinishedCopy::end, end)));
}

const auto stoppedAtOnce = nothingCopied(UnfinishedCopy::End::notBegun);
const auto cutOffAtOnce = nothingCopied(UnfinishedCopy::End::cutOffBeforeItBegan);

class StoppedListingTest : public CardImportTest
{
protected:
    UnfinishedCopies copies() const { return copiesOf(journal); }
    static UnfinishedCopies copiesOf(const fs::path &place)
    {
        return {CopyJournal(place), [](const FileUrl &, const FileUrl &) { return std::vector<FileUrl>(); }};
    }

    UnfinishedCopy listedCard(std::initializer_list<const char *> clips) const
    {
        UnfinishedCopy copy{.name = u"CARD"_s,
                            .folder = shoots().appending(u"CARD — 2026-05-04"_s),
                            .end = UnfinishedCopy::End::listing};
        for (const char *const clip : clips) {
            copy.files.push_back({FileUrl(card().path() / clip), {}});
        }
        return copy;
    }

    // Returns the copies of which the next start tells.
    Told toldNext() const { return toldBy(copies()); }
    static Told toldBy(UnfinishedCopies next)
    {
        for (const auto &kept : next.leftBehind()) {
            next.add(kept);
        }
        return next.copies();
    }

    // The journal as it would be left if the program were killed now: nobody holds the locks of a copied file.
    [[nodiscard]] fs::path journalIfKilledNow() const
    {
        fs::path left = folder / "left";
        fs::remove_all(left);
        std::error_code ignored; // there may be none yet
        fs::copy(journal, left, ignored);
        return left;
    }

    // A card with so many folders that something else can begin before all have been read.
    void insertLargeCard() const
    {
        insertCard();
        for (int i = 0; i < 300; ++i) {
            (void)folder.write("card/DCIM/" + std::to_string(i) + "/pool 1.mov", "film");
        }
    }

    // One of the card's folders is being read by some thread.
    bool isListing() const
    {
        const std::string clips = (card().path() / "DCIM/").native();
        for (const auto &entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code closed; // meanwhile
            if (fs::read_symlink(entry.path(), closed).native().starts_with(clips)) {
                return true;
            }
        }
        return false;
    }

    // Imports the card and resets the engine as soon as folders are read. The listing may have been over by then, or at
    // its first folder, so that is tried until the reset was in time.
    [[nodiscard]] bool resetsDuringTheListing(SortEngine &engine)
    {
        for (int attempt = 0; attempt < 100; ++attempt) {
            isCopied = false;
            engine.importCard(card(), u"CARD"_s);
            while (!isListing() && !isCopied) {
                std::this_thread::yield();
            }
            engine.reset();
            if (!waitUntil([&] { return !engine.isCopying(); })) {
                return false;
            }
            if (!isCopied && !engine.unfinishedCopies().empty()) {
                return true;
            }
            engine.dismissUnfinishedCopies();
        }
        return false;
    }

    // Imports the card until a journal could be copied while the card's folders were being read.
    [[nodiscard]] fs::path journalOfAListing(SortEngine &engine)
    {
        for (int attempt = 0; attempt < 100; ++attempt) {
            isCopied = false;
            engine.importCard(card(), u"CARD"_s);
            while (!isListing() && !isCopied) {
                std::this_thread::yield();
            }
            fs::path left = journalIfKilledNow();
            const bool wasInTime = isListing();
            if (!waitUntil([&] { return !engine.isCopying(); })) {
                break;
            }
            if (wasInTime) {
                return left;
            }
        }
        return {};
    }

    SortSeams journalingSeams()
    {
        auto parts = importingSeams();
        parts.copyJournal = journal;
        parts.copyFiles = [this](const auto &...) {
            isCopied = true;
            return std::vector<CopyResult>();
        };
        return parts;
    }

    const fs::path journal = folder / "data/Unfinished";
    std::atomic<bool> isCopied = false;
};

} // namespace

TEST_F(StoppedListingTest, OfWhichClipsAreKnownIsToldAtEveryStartUntilItIsDismissed)
{
    auto kept = copies();
    auto entry = CopyJournal(journal).begin(listedCard({}));
    const auto stopped = UnfinishedCopies::stopListing(entry, listedCard({"a.mov", "b.mov"}));
    ASSERT_TRUE(stopped);
    UnfinishedCopy left = listedCard({"a.mov", "b.mov"});
    left.end = UnfinishedCopy::End::notBegun;
    EXPECT_EQ(stopped->copy, left);
    EXPECT_EQ(unfinishedCopyOf(jsonOf(left)), left);
    EXPECT_THAT(toldNext(), ElementsAre(left));
    EXPECT_THAT(toldNext(), ElementsAre(left));
    kept.add(*stopped);
    EXPECT_THAT(kept.copies(), ElementsAre(left));
    kept.dismiss();
    EXPECT_THAT(toldNext(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(StoppedListingTest, OfWhichNoClipIsKnownIsNotTold)
{
    auto entry = CopyJournal(journal).begin(listedCard({}));
    EXPECT_FALSE(UnfinishedCopies::stopListing(entry, listedCard({})));
    EXPECT_THAT(toldNext(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(StoppedListingTest, ThatWasCutOffIsToldAtEveryStartUntilItIsDismissedAlsoWhileTheDiskIsOut)
{
    fs::create_directory(shoots().path());
    (void)CopyJournal(journal).begin(listedCard({})); // and nothing more is heard of it
    EXPECT_THAT(toldNext(), cutOffAtOnce);
    EXPECT_THAT(toldNext(), cutOffAtOnce);
    fs::create_directory(listedCard({}).folder.path()); // by the next import of the day
    EXPECT_THAT(toldNext(), cutOffAtOnce);
    auto kept = copies();
    const auto left = kept.leftBehind();
    ASSERT_EQ(left.size(), 1U);
    kept.add(left.front());
    kept.dismiss();
    EXPECT_TRUE(fs::is_empty(journal));

    fs::remove_all(shoots().path());
    (void)CopyJournal(journal).begin(listedCard({}));
    EXPECT_THAT(toldNext(), cutOffAtOnce);
}

TEST_F(StoppedListingTest, OfWhichTheFolderIsMadeIsLeftToTheCopysOwnEntry)
{
    (void)CopyJournal(journal).begin(listedCard({}));
    fs::create_directories(listedCard({}).folder.path());
    EXPECT_THAT(toldNext(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(StoppedListingTest, ComesBackFromItsTextAsItWas)
{
    for (const auto end : {UnfinishedCopy::End::listing, UnfinishedCopy::End::cutOffBeforeItBegan}) {
        UnfinishedCopy copy = listedCard({});
        copy.end = end;
        EXPECT_EQ(unfinishedCopyOf(jsonOf(copy)), copy);
    }
}

TEST_F(StoppedListingTest, AProgramThatIsKilledWhileItListsACardTellsOfItAtTheNextStart)
{
    insertLargeCard();
    fs::path left;
    {
        SortEngine engine(journalingSeams());
        engine.setImportRoot(shoots());
        left = journalOfAListing(engine);
        ASSERT_FALSE(left.empty());
        EXPECT_TRUE(fs::is_empty(journal)) << "nothing is told of imports that came to their end";
    }
    auto parts = journalingSeams();
    parts.copyJournal = left;
    SortEngine next(parts);
    EXPECT_TRUE(waitUntil([&] { return testing::Value(next.unfinishedCopies(), cutOffAtOnce); }));
}

TEST_F(StoppedListingTest, OfACardWithoutClipsThereIsNothingToTellAtTheNextStart)
{
    fs::create_directories(card().path());
    fs::create_directory(shoots().path());
    SortEngine engine(journalingSeams());
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(StoppedListingTest, AProgramThatIsKilledBeforeTheCardsFolderIsMadeTellsThatNothingWasCopied)
{
    insertCard();
    Gate listed;
    Gate begun;
    auto parts = journalingSeams();
    parts.copyFiles = [&](const auto &, const FileUrl &, const CopyOrder &order) {
        listed.pass();
        order.observer.progressed({});
        begun.pass();
        return std::vector<CopyResult>();
    };
    SortEngine engine(parts);
    engine.setImportRoot(shoots());
    engine.importCard(card(), u"CARD"_s);
    listed.awaitArrival();
    EXPECT_THAT(toldBy(copiesOf(journalIfKilledNow())), cutOffAtOnce);
    listed.open();
    begun.awaitArrival();
    EXPECT_THAT(toldBy(copiesOf(journalIfKilledNow())), IsEmpty()) << "the folder was made, and thrown away since";
    begun.open();
    ASSERT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(StoppedListingTest, IsToldByTheEngineAndByTheNextOneAndNoFolderIsMade)
{
    insertLargeCard();
    {
        SortEngine engine(journalingSeams());
        engine.setImportRoot(shoots());
        ASSERT_TRUE(resetsDuringTheListing(engine));
        EXPECT_THAT(engine.unfinishedCopies(), stoppedAtOnce);
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        EXPECT_TRUE(fs::is_empty(shoots().path()));
    }
    const auto kept = copies().leftBehind();
    ASSERT_THAT(kept, testing::SizeIs(1));
    for (const ClipFiles &file : kept[0].copy.files) {
        EXPECT_TRUE(file.clip.path().native().starts_with(card().path().native())) << file.clip.path();
    }
    SortEngine next(journalingSeams());
    int changes = 0;
    QObject::connect(&next, &SortEngine::unfinishedCopiesChanged, [&] { ++changes; });
    EXPECT_TRUE(waitUntil([&] { return testing::Value(next.unfinishedCopies(), stoppedAtOnce); }));
    EXPECT_EQ(changes, 1);
}
