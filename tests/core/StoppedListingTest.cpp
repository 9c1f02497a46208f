// A card's import that something else ends while the card's clips are still being listed.
#include <thread>

#include "core/CardNote.h"
#include "core/UnfinishedCopies.h"
#include "tests/core/CardImportFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

const QString nothingCopied =
    u"The copy of CARD was stopped before its first file: nothing of it was copied. Don't erase the card."_s;

class StoppedListingTest : public CardImportTest
{
protected:
    UnfinishedCopies copies() const { return {CopyJournal(journal), {}}; }

    UnfinishedCopy listedCard(std::initializer_list<const char *> clips) const
    {
        UnfinishedCopy copy{.name = u"CARD"_s, .folder = shoots().appending(u"CARD — 2026-05-04"_s)};
        for (const char *const clip : clips) {
            copy.files.push_back({FileUrl(card().path() / clip), {}});
        }
        return copy;
    }

    // The note of the next start.
    QString nextNote() const
    {
        auto next = copies();
        for (const auto &kept : next.leftBehind()) {
            next.add(kept);
        }
        return next.note();
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
            if (!isCopied && !engine.unfinishedNote().isEmpty()) {
                return true;
            }
            engine.dismissUnfinishedNote();
        }
        return false;
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

TEST_F(StoppedListingTest, OfWhichClipsAreKnownIsToldAtEveryStartUntilTheNoteIsDismissed)
{
    auto kept = copies();
    const auto stopped = kept.stopListing(listedCard({"a.mov", "b.mov"}));
    ASSERT_TRUE(stopped);
    EXPECT_EQ(unfinishedNote(stopped->copy), nothingCopied);
    EXPECT_EQ(unfinishedCopyOf(jsonOf(stopped->copy)), stopped->copy);
    EXPECT_EQ(nextNote(), nothingCopied);
    EXPECT_EQ(nextNote(), nothingCopied);
    kept.add(*stopped);
    EXPECT_EQ(kept.note(), nothingCopied);
    kept.dismiss();
    EXPECT_EQ(nextNote(), QString());
    EXPECT_TRUE(fs::is_empty(journal));
}

TEST_F(StoppedListingTest, OfWhichNoClipIsKnownIsNotTold)
{
    EXPECT_FALSE(copies().stopListing(listedCard({})));
    EXPECT_EQ(nextNote(), QString());
}

TEST_F(StoppedListingTest, IsToldByTheEngineAndByTheNextOneAndNoFolderIsMade)
{
    insertLargeCard();
    {
        SortEngine engine(journalingSeams());
        engine.setImportRoot(shoots());
        ASSERT_TRUE(resetsDuringTheListing(engine));
        EXPECT_EQ(engine.unfinishedNote(), nothingCopied);
        EXPECT_EQ(engine.stage(), SortEngine::Stage{});
        EXPECT_TRUE(fs::is_empty(shoots().path()));
    }
    SortEngine next(journalingSeams());
    EXPECT_TRUE(waitUntil([&] { return next.unfinishedNote() == nothingCopied; }));
}
