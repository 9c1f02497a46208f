// Our own file panel on folders that are large, change, vanish or can't be read.
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>

#include "tests/shell/panels/FileBrowserFixture.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;

namespace fs = std::filesystem;

using FileBrowserChangesTest = FileBrowserTest;

TEST_F(FileBrowserChangesTest, AMissingFolderIsReportedAndTheOpenOneStays)
{
    openAt(folder.path());
    browser.goTo(u"no such"_s);
    EXPECT_TRUE(says(u"“no such” isn't there."_s));
    EXPECT_EQ(browser.folderPath(), shownPath(folder.path()));
    EXPECT_TRUE(browser.canAccept());
    browser.goTo(u" "_s);
    browser.select(-1);
    EXPECT_EQ(browser.problem(), QString()) << "said until something else is done";
}

TEST_F(FileBrowserChangesTest, AFolderWithoutPermissionIsReportedAndTheOpenOneStays)
{
    fs::create_directory(folder / "locked");
    fs::permissions(folder / "locked", fs::perms::none);
    openAt(folder.path());
    fs::permissions(folder.path(), fs::perms::all);
    const Unprivileged user;
    browser.enter(0);
    EXPECT_TRUE(says(u"You don't have permission to open “locked”."_s));
    EXPECT_EQ(browser.folderPath(), shownPath(folder.path()));
    browser.select(0);
    browser.accept();
    EXPECT_TRUE(says(u"You don't have permission to open “locked”."_s));
    EXPECT_TRUE(browser.isOpen());
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(FileBrowserChangesTest, AVanishedSelectedFolderIsNotChosen)
{
    fs::create_directory(folder / "a");
    openAt(folder.path());
    browser.select(0);
    fs::remove(folder / "a");
    browser.accept();
    EXPECT_TRUE(says(u"“a” isn't there."_s));
    EXPECT_TRUE(waitUntil([this] { return folders().empty(); }));
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(FileBrowserChangesTest, TheListFollowsChangesOfTheOpenFolder)
{
    fs::create_directory(folder / "b");
    openAt(folder.path());
    browser.select(0);
    ASSERT_TRUE(tells(u"“b” · no clips"_s));
    fs::create_directory(folder / "a");
    (void)folder.write("c.mov");
    EXPECT_TRUE(waitUntil([this] { return folders().size() == 2 && files().size() == 1; }));
    EXPECT_EQ(browser.selectedRow(), 1) << "the same folder is selected";
    fs::remove(folder / "b");
    EXPECT_TRUE(waitUntil([this] { return folders().size() == 1; }));
    EXPECT_EQ(browser.selectedRow(), -1);
    EXPECT_TRUE(tells(u"“"_s + shownPath(folder.path().filename()) + u"” · 1 clip"_s));
}

TEST_F(FileBrowserChangesTest, UpFromAVanishedFolderOpensItsNearestExistingAncestor)
{
    fs::create_directories(folder / "a/b/c");
    openAt(folder / "a/b/c");
    fs::remove_all(folder / "a");
    EXPECT_TRUE(says(u"“c” isn't there."_s));
    EXPECT_FALSE(browser.canAccept());
    EXPECT_EQ(browser.status(), QString());
    EXPECT_EQ(browser.note(), QString());
    browser.goUp();
    EXPECT_TRUE(shows(folder.path()));
    EXPECT_EQ(browser.problem(), QString());
}

TEST_F(FileBrowserChangesTest, TheMainThreadGoesOnWhileTenThousandEntriesAreListed)
{
    for (int i = 0; i < 5000; ++i) {
        fs::create_directory(folder / ("day " + std::to_string(i)));
        (void)folder.write("clip " + std::to_string(i) + ".mov");
    }
    int ticks = 0;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&ticks] { ++ticks; });
    clock.start(0);
    QSignalSpy visited(&browser, &FileBrowser::visited);
    browser.openForFolder({}, FileUrl(folder.path()), remember());
    EXPECT_TRUE(visited.isEmpty());
    ASSERT_TRUE(waitUntil([&] { return !visited.isEmpty(); }));
    EXPECT_GT(ticks, 0);
    EXPECT_EQ(browser.entries()->rowCount(), 10000);
    EXPECT_EQ(folders()[9], "day 9");
    EXPECT_EQ(folders()[4999], "day 4999");
}

TEST_F(FileBrowserChangesTest, CanBeDestroyedWhileItReads)
{
    for (int i = 0; i < 500; ++i) {
        (void)folder.write("deep/clip " + std::to_string(i) + ".mov");
    }
    auto leaving = std::make_unique<FileBrowser>();
    leaving->openForFolder({}, FileUrl(folder.path()), remember());
    leaving.reset();
    EXPECT_THAT(chosen, IsEmpty());
}
