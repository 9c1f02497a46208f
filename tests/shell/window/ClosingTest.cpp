// The window closed while footage is copied.
#include "core/copies/UnfinishedCopy.h"
#include "tests/shell/ShellWindow.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class ClosingTest : public ShellWindowTest
{
protected:
    ClosingTest()
        : ShellWindowTest([this](SortSeams &parts) {
            parts.copyJournal = desk / "Copies";
            parts.copyFiles = [this](const auto &...) -> CopyAnswer {
                if (isImportHeld) {
                    copying.pass();
                }
                if (importFailure.isEmpty()) {
                    return std::vector<CopyResult>();
                }
                return tl::unexpected(CopyFailure{importFailure});
            };
        })
    {}

    // Closes the window while an export copies, and waits for the question.
    void closeDuringCopy()
    {
        open();
        sort();
        startCopy();
        window->close();
        (void)shown(question);
    }

    // Closes the window while a card is brought in, and answers to finish that first.
    void finishImport()
    {
        open();
        engine.setImportRoot(FileUrl(desk.path()));
        makeClips({"kitchen 1"});
        isImportHeld = true;
        engine.importCard(shoot, u"CARD"_s);
        copying.awaitArrival();
        window->close();
        Desktop::click(shown(u"Finish, Then Close"_s));
        (void)shown(u"Closing when the copy is done…"_s);
        copying.open();
    }

    QObject &card()
    {
        QQuickItem *item = &shown(question);
        while (item && item->metaObject()->indexOfSignal("answered(int)") < 0) {
            item = item->parentItem();
        }
        return *item;
    }

    std::atomic<bool> isImportHeld = false;
    QString importFailure; // set before the import begins; empty for none
    const QString question = u"Footage is still being copied"_s;
};

} // namespace

TEST_F(ClosingTest, AWindowWithNothingToCopyClosesAtOnce)
{
    open();
    sort();
    window->close();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ClosingTest, FinishingClosesOnceTheEventIsWritten)
{
    closeDuringCopy();
    Desktop::click(shown(u"Finish, Then Close"_s));
    (void)shown(u"Closing when the copy is done…"_s);
    EXPECT_TRUE(window->isVisible());
    copying.open();
    EXPECT_TRUE(waitUntil([this] { return !window->isVisible(); }));
    EXPECT_EQ(copied, 1);
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(ClosingTest, StoppingClosesOnceTheFileInWorkIsDone)
{
    closeDuringCopy();
    Desktop::click(shown(u"Stop and Close"_s));
    (void)shown(u"Stopping the copy…"_s);
    EXPECT_TRUE(window->isVisible());
    copying.open();
    EXPECT_TRUE(waitUntil([this] { return !window->isVisible(); }));
    EXPECT_EQ(copied, 1);
    EXPECT_FALSE(engine.isCopying());
}

// The question takes a moment to fade, in which it can still be pressed.
TEST_F(ClosingTest, StoppingACopyThatHasJustEndedOnlyCloses)
{
    closeDuringCopy();
    QObject &asked = card();
    copying.open();
    ASSERT_TRUE(reaches(engine, StageKind::done));
    ASSERT_TRUE(waitUntil([this] { return !engine.isCopying(); }));
    QMetaObject::invokeMethod(&asked, "answered", Q_ARG(int, 0));
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(engine.stage().kind, StageKind::done);
}

TEST_F(ClosingTest, KeepingItOpenLetsTheCopyGoOn)
{
    closeDuringCopy();
    Desktop::click(shown(u"Keep Open"_s));
    ASSERT_TRUE(goes(question));
    copying.open();
    EXPECT_TRUE(reaches(engine, StageKind::done));
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ClosingTest, TheQuestionGoesWhenTheCopyEndsBeforeItsAnswer)
{
    closeDuringCopy();
    copying.open();
    EXPECT_TRUE(goes(question));
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ClosingTest, FinishingStaysOpenWhereSomethingOfTheCardCouldNotBeRead)
{
    const auto closed = folder.write("card/101MEDIA/pool 2.mov").parent_path();
    (void)folder.write("card/kitchen 1.mov");
    std::filesystem::create_directory(folder / "Shoots");
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    std::filesystem::permissions(folder / "Shoots", std::filesystem::perms::all);
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    open();
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    isImportHeld = true;
    {
        const Unprivileged user;
        engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
        copying.awaitArrival();
    }
    std::filesystem::permissions(closed, std::filesystem::perms::all);
    window->close();
    Desktop::click(shown(u"Finish, Then Close"_s));
    (void)shown(u"Closing when the copy is done…"_s);
    copying.open();
    ASSERT_TRUE(waitUntil([this] { return !engine.isCopying(); }));
    (void)shown(u"Clips may be missing: “101MEDIA” on CARD couldn't be read. Don't erase the card."_s);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ClosingTest, FinishingClosesOnceACardIsCopied)
{
    finishImport();
    EXPECT_TRUE(waitUntil([this] { return !window->isVisible(); }));
}

TEST_F(ClosingTest, StoppingACardsCopyClosesAndLeavesItsFolderMarkedAndTheNextStartToSayWhatIsMissing)
{
    open();
    (void)folder.write("card/kitchen 1.mov");
    std::filesystem::create_directory(folder / "Shoots");
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    isImportHeld = true;
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    const auto dated = engine.folder()->path();
    copying.awaitArrival();
    std::filesystem::create_directory(dated); // as the importer has by now
    window->close();
    Desktop::click(shown(u"Stop and Close"_s));
    (void)shown(u"Stopping the copy…"_s);
    copying.open();
    EXPECT_TRUE(waitUntil([this] { return !window->isVisible(); }));
    EXPECT_TRUE(std::filesystem::exists(dated.native() + " (unfinished)"));
    SortSeams next = seams();
    next.copyJournal = desk / "Copies";
    const SortEngine later(next);
    EXPECT_TRUE(waitUntil([&] { return !later.unfinishedCopies().empty(); }));
    EXPECT_EQ(later.unfinishedCopies(), engine.unfinishedCopies());
}

TEST_F(ClosingTest, FinishingStaysOpenOverACardsCopyThatFailed)
{
    importFailure = u"The card can't be read any more."_s;
    finishImport();
    (void)shown(importFailure);
    EXPECT_TRUE(waitUntil([this] { return !engine.isCopying(); }));
    EXPECT_TRUE(goes(u"Closing when the copy is done…"_s));
    drain();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(engine.stage().kind, StageKind::failed);
    window->close(); // it has been read
    EXPECT_FALSE(window->isVisible());
}
