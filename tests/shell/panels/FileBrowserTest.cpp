// The state of our own file panel, on real folders.
#include "shell/panels/FileBrowser.h"

#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>

#include "tests/shell/HomeFolder.h"
#include "tests/support/Unprivileged.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

QString shownPath(const fs::path &path)
{
    return QString::fromStdString(path.string());
}

class FileBrowserTest : public testing::Test
{
protected:
    // Opens the panel and waits until it shows the folder.
    void openAt(const fs::path &start)
    {
        browser.openForFolder({.prompt = u"Sort"_s, .message = u"Choose."_s}, FileUrl(start), remember());
        ASSERT_TRUE(shows(start));
    }

    void openToSave(const fs::path &file)
    {
        browser.openForFile(
            {.title = u"Export"_s, .suggestion = FileUrl(file), .typeName = u"CSV files"_s, .suffix = u"csv"_s},
            remember());
        ASSERT_TRUE(shows(file.parent_path()));
    }

    [[nodiscard]] bool shows(const fs::path &opened)
    {
        return waitUntil([&] { return browser.folderPath() == shownPath(opened) && browser.canAccept(); });
    }
    [[nodiscard]] bool says(const QString &problem)
    {
        return waitUntil([&] { return browser.problem() == problem; });
    }
    [[nodiscard]] bool tells(const QString &status)
    {
        return waitUntil([&] { return browser.status() == status; });
    }
    [[nodiscard]] bool closes()
    {
        return waitUntil([this] { return !browser.isOpen(); });
    }

    std::function<void(FileUrl)> remember()
    {
        return [this](const FileUrl &url) { chosen.push_back(url.path()); };
    }

    const std::vector<std::string> &folders() { return browser.entries()->contents().folders; }
    const std::vector<std::string> &files() { return browser.entries()->contents().files; }
    int rowOf(const std::string &name)
    {
        return static_cast<int>(std::ranges::find(folders(), name) - folders().begin());
    }

    const HomeFolder home;
    const TempFolder folder;
    FileBrowser browser;
    std::vector<fs::path> chosen;
};

} // namespace

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

TEST_F(FileBrowserTest, AMissingFolderIsReportedAndTheOpenOneStays)
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

TEST_F(FileBrowserTest, AFolderWithoutPermissionIsReportedAndTheOpenOneStays)
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

TEST_F(FileBrowserTest, AVanishedSelectedFolderIsNotChosen)
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

TEST_F(FileBrowserTest, TheListFollowsChangesOfTheOpenFolder)
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

TEST_F(FileBrowserTest, UpFromAVanishedFolderOpensItsNearestExistingAncestor)
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

TEST_F(FileBrowserTest, AnEmptyFolderHasANote)
{
    openAt(folder.path());
    EXPECT_EQ(browser.note(), u"There are no folders and no clips here."_s);
    openToSave(folder / "a.csv");
    EXPECT_EQ(browser.note(), u"There are no folders here."_s);
}

TEST_F(FileBrowserTest, TheMainThreadGoesOnWhileTenThousandEntriesAreListed)
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

TEST_F(FileBrowserTest, AFileIsNamedInTheOpenFolderWithItsSuffixAdded)
{
    fs::create_directory(folder / "texts");
    (void)folder.write("old.CSV");
    (void)folder.write("clip.mov");
    openToSave(folder / "binnacle.csv");
    EXPECT_TRUE(browser.isSaving());
    EXPECT_EQ(browser.prompt(), u"Save"_s);
    EXPECT_EQ(browser.fileName(), u"binnacle.csv"_s);
    EXPECT_EQ(browser.status(), QString());
    EXPECT_THAT(files(), ElementsAre("old.CSV"));
    browser.enter(0);
    ASSERT_TRUE(shows(folder / "texts"));
    browser.setFileName(u" report "_s);
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre(folder / "texts/report.csv"));

    openToSave(folder / "binnacle.csv");
    EXPECT_EQ(browser.fileName(), u"binnacle.csv"_s) << "the suggestion, not what was written last";
    browser.setFileName(u"report.txt"_s);
    browser.accept();
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen.back(), folder / "report.txt") << "a suffix of one's own is kept";
}

TEST_F(FileBrowserTest, AFileThatIsThereIsReplacedOnlyWhenTheEditorSaysSo)
{
    (void)folder.write("report.csv");
    openToSave(folder / "report.csv");
    browser.accept();
    ASSERT_TRUE(waitUntil([this] { return browser.fileToReplace() == u"report.csv"_s; }));
    browser.keepFile();
    EXPECT_EQ(browser.fileToReplace(), QString());
    EXPECT_TRUE(browser.isOpen());
    EXPECT_THAT(chosen, IsEmpty());
    browser.accept();
    ASSERT_TRUE(waitUntil([this] { return browser.fileToReplace() == u"report.csv"_s; }));
    browser.replaceFile();
    EXPECT_FALSE(browser.isOpen());
    EXPECT_THAT(chosen, ElementsAre(folder / "report.csv"));
}

TEST_F(FileBrowserTest, ANameThatNoFileCanHaveIsReported)
{
    fs::create_directory(folder / "texts.csv");
    openToSave(folder / "a.csv");
    browser.setFileName(u"texts"_s);
    browser.accept();
    EXPECT_TRUE(says(u"There is a folder named “texts.csv” already."_s));
    for (const QString &name : {u"a/b"_s, u".."_s, u"."_s}) {
        browser.setFileName(name);
        browser.accept();
        EXPECT_TRUE(says(u"“%1” can't be the name of a file."_s.arg(name)));
    }
    browser.setFileName(u"  "_s);
    EXPECT_FALSE(browser.canAccept());
    EXPECT_TRUE(browser.isOpen());
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(FileBrowserTest, CanBeDestroyedWhileItReads)
{
    for (int i = 0; i < 500; ++i) {
        (void)folder.write("deep/clip " + std::to_string(i) + ".mov");
    }
    auto leaving = std::make_unique<FileBrowser>();
    leaving->openForFolder({}, FileUrl(folder.path()), remember());
    leaving.reset();
    EXPECT_THAT(chosen, IsEmpty());
}
