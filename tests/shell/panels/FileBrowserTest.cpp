// The state of our own file panel, on real folders.
#include <QtTest/QSignalSpy>

#include "tests/shell/panels/FileBrowserFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

TEST_F(FileBrowserTest, OpensInTheGivenFolderWithTheWordsOfTheRequest)
{
    (void)folder.write("day 2/a.mov");
    (void)folder.write("b.mov");
    openAt(folder.path());
    EXPECT_TRUE(browser.isOpen());
    EXPECT_FALSE(browser.isSaving());
    EXPECT_EQ(browser.title(), u"Choose."_s);
    EXPECT_EQ(browser.prompt(), u"Sort"_s);
    EXPECT_THAT(folders(), ElementsAre("day 2"));
    EXPECT_THAT(files(), ElementsAre("b.mov"));
    EXPECT_EQ(browser.selectedRow(), -1);
}

TEST_F(FileBrowserTest, OpensInTheUsersVideosOrAtHomeWhenTheFolderIsGone)
{
    browser.openForFolder({}, FileUrl(folder / "gone"), remember());
    EXPECT_TRUE(shows(home.path()));
    fs::create_directory(home / "Videos");
    browser.openForFolder({}, std::nullopt, remember());
    EXPECT_TRUE(shows(home / "Videos"));
    EXPECT_EQ(browser.problem(), QString()) << "the editor has asked for nothing yet";
}

TEST_F(FileBrowserTest, CountsTheClipsOfTheFolderToChooseAtAnyDepth)
{
    (void)folder.write("empty/notes.txt");
    (void)folder.write("many/deep/down/1.mov");
    (void)folder.write("many/2.MXF");
    (void)folder.write("one/1.mp4");
    openAt(folder.path());
    const QString name = shownPath(folder.path().filename());
    EXPECT_TRUE(tells(u"“"_s + name + u"” · 3 clips"_s));
    browser.select(rowOf("many"));
    EXPECT_EQ(browser.status(), u"“many” · counting clips…"_s);
    EXPECT_TRUE(tells(u"“many” · 2 clips"_s));
    browser.select(rowOf("one"));
    EXPECT_TRUE(tells(u"“one” · 1 clip"_s));
    browser.select(rowOf("empty"));
    EXPECT_TRUE(tells(u"“empty” · no clips"_s));
    browser.select(-1);
    EXPECT_TRUE(tells(u"“"_s + name + u"” · 3 clips"_s));
}

TEST_F(FileBrowserTest, AMarkerInAFoldersNameIsShownAsItIs)
{
    fs::create_directory(folder / "House 50%1 off");
    openAt(folder / "House 50%1 off");
    EXPECT_TRUE(tells(u"“House 50%1 off” · no clips"_s));
}

TEST_F(FileBrowserTest, AcceptsTheOpenFolderThoughItContainsOnlyClips)
{
    (void)folder.write("kitchen.mov");
    openAt(folder.path());
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre(folder.path()));
}

TEST_F(FileBrowserTest, AcceptsTheSelectedFolder)
{
    fs::create_directory(folder / "caf\xE9");
    openAt(folder.path());
    browser.select(0);
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre(folder / "caf\xE9"));
}

TEST_F(FileBrowserTest, OnlyAFolderCanBeSelected)
{
    (void)folder.write("day/a.mov");
    (void)folder.write("b.mov");
    openAt(folder.path());
    browser.select(1);
    EXPECT_EQ(browser.selectedRow(), -1);
    browser.select(0);
    EXPECT_EQ(browser.selectedRow(), 0);
    browser.select(7);
    EXPECT_EQ(browser.selectedRow(), -1);
}

TEST_F(FileBrowserTest, GoingUpSelectsTheFolderThatWasLeft)
{
    fs::create_directories(folder / "a");
    fs::create_directories(folder / "b/c");
    openAt(folder.path());
    browser.enter(rowOf("b"));
    ASSERT_TRUE(shows(folder / "b"));
    EXPECT_THAT(folders(), ElementsAre("c"));
    EXPECT_EQ(browser.selectedRow(), -1);
    browser.goUp();
    ASSERT_TRUE(shows(folder.path()));
    EXPECT_EQ(browser.selectedRow(), rowOf("b"));
}

TEST_F(FileBrowserTest, NothingIsAboveTheRoot)
{
    openAt("/");
    EXPECT_EQ(browser.folderName(), u"/"_s);
    browser.goUp();
    EXPECT_TRUE(browser.canAccept()) << "nothing is opened";
    EXPECT_EQ(browser.folderPath(), u"/"_s);
}

TEST_F(FileBrowserTest, TheLaterOfTwoOpenedFoldersIsShown)
{
    fs::create_directories(folder / "a");
    fs::create_directories(folder / "b");
    openAt(folder.path());
    QSignalSpy visited(&browser, &FileBrowser::visited);
    browser.enter(0);
    browser.enter(1);
    EXPECT_FALSE(browser.canAccept()) << "not the folder that is being left";
    ASSERT_TRUE(shows(folder / "b"));
    EXPECT_EQ(visited.size(), 1);
}

TEST_F(FileBrowserTest, OpensATypedFolder)
{
    const fs::path clip = folder.write("day/clip.mov");
    fs::create_directory(home / "Shoots");
    openAt(folder.path());
    browser.goTo(u"~/Shoots"_s);
    ASSERT_TRUE(shows(home / "Shoots"));
    browser.goTo(shownPath(clip));
    ASSERT_TRUE(shows(folder / "day")) << "where a file lies";
    browser.goTo(u".."_s);
    ASSERT_TRUE(shows(folder.path()));
    QSignalSpy visited(&browser, &FileBrowser::visited);
    browser.goTo(shownPath(folder.path()) + u"/day/.."_s);
    EXPECT_TRUE(visited.wait()) << "so that what was typed becomes the path again";
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(FileBrowserTest, ThePathOfTheOpenFolderAcceptsIt)
{
    openAt(folder.path());
    browser.goTo(shownPath(folder.path()));
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre(folder.path()));
}

TEST_F(FileBrowserTest, AnEmptyFolderHasANote)
{
    openAt(folder.path());
    EXPECT_EQ(browser.note(), u"There are no folders and no clips here."_s);
    openToSave(folder / "a.csv");
    EXPECT_EQ(browser.note(), u"There are no folders here."_s);
}

TEST_F(FileBrowserTest, APlaceIsOpenedAndMarkedAsCurrent)
{
    fs::create_directory(home / "Videos");
    openAt(folder.path());
    ASSERT_TRUE(waitUntil([this] { return browser.places().mid(0, 2) == QStringList({u"Home"_s, u"Videos"_s}); }));
    EXPECT_EQ(browser.currentPlace(), -1);
    browser.openPlace(1);
    ASSERT_TRUE(shows(home / "Videos"));
    EXPECT_EQ(browser.currentPlace(), 1);
}

TEST_F(FileBrowserTest, CancellingChoosesNothingAndSoDoesAnotherRequest)
{
    openAt(folder.path());
    browser.cancel();
    EXPECT_FALSE(browser.isOpen());
    browser.accept();
    openAt(folder.path());
    int others = 0;
    browser.openForFolder({}, FileUrl(folder.path()), [&others](const FileUrl &) { ++others; });
    ASSERT_TRUE(shows(folder.path()));
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, IsEmpty());
    EXPECT_EQ(others, 1);
}
