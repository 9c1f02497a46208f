// Our own panel for folders and files, in the window, by keyboard and mouse.
#include <QtGui/QGuiApplication>
#include <QtGui/QStyleHints>
#include <QtTest/QTest>

#include "tests/shell/HomeFolder.h"
#include "tests/shell/ShellWindow.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

class FilePanelTest : public ShellWindowTest
{
protected:
    FilePanelTest()
        : ShellWindowTest([this](SortSeams &parts) {
            parts.chooseFolder = [this](const FolderPanel &panel, std::function<void(FileUrl)> chosen) {
                fileRequest.askForFolder(panel, folderOfShoots(engine), std::move(chosen));
            };
        })
    {
        (void)home.write("Shoots/Elm Road 4/kitchen 1.mov");
        (void)home.write("Shoots/Elm Road 4/pool 2.mov");
        (void)home.write("Shoots/Hill Street 9/garage 1.mov");
        (void)home.write("Shoots/loose clip.mov");
        fs::create_directory(home / "Videos");
    }

    static QString text(const fs::path &path) { return QString::fromStdString(path.string()); }

    FileBrowser &panel() { return *fileRequest.browser(); }

    // Asks for a shoot; the panel opens in the folder of the last one.
    void choose()
    {
        engine.sortFolder(FileUrl(home / "Shoots/Hill Street 9"));
        ASSERT_TRUE(reaches(engine, StageKind::results));
        engine.reset();
        Desktop::click(shown(u"Choose Folder"_s));
        awaitPanel(home / "Shoots");
    }

    void awaitPanel(const fs::path &expected)
    {
        ASSERT_TRUE(shows(expected));
        (void)shown(u"Cancel"_s);
    }

    [[nodiscard]] bool shows(const fs::path &expected)
    {
        return waitUntil([&] { return panel().folderPath() == text(expected) && panel().canAccept(); });
    }
    [[nodiscard]] bool selects(const QString &name)
    {
        return waitUntil([&] {
            const int row = panel().selectedRow();
            return name.isEmpty() ? row < 0 : row >= 0 && panel().entries()->folderNames().value(row) == name;
        });
    }
    [[nodiscard]] bool sorts(const fs::path &chosen)
    {
        return reaches(engine, StageKind::results) && engine.folder() == FileUrl(chosen);
    }

    [[nodiscard]] bool reads(const QString &label, const QString &content)
    {
        return waitUntil([&, &item = control(label)] { return item.property("text") == content; });
    }
    // Waits until the item of that title, label, help text or object name has focus.
    [[nodiscard]] bool hasKeyboard(const QString &name)
    {
        return waitUntil([&] {
            const QQuickItem *item = window->activeFocusItem();
            return item != nullptr && (item->property("title") == name || item->property("label") == name ||
                                       item->property("help") == name || item->objectName() == name);
        });
    }

    void exportVocabulary()
    {
        openMenu();
        Desktop::click(shown(u"Diagnostics"_s));
        Desktop::click(shown(u"Export Vision Vocabulary…"_s));
        awaitPanel(home.path());
    }

    const HomeFolder home;
};

} // namespace

TEST_F(FilePanelTest, TheKeyboardAloneChoosesAShootBesideTheLastOne)
{
    open();
    choose();
    EXPECT_TRUE(isShown(u"Choose the folder holding this shoot's raw clips."_s));
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    Desktop::key(u"Down"_s);
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    (void)shown(u"“Elm Road 4” · 2 clips"_s);
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(shows(home / "Shoots/Elm Road 4"));
    Desktop::key(u"BackSpace"_s);
    ASSERT_TRUE(shows(home / "Shoots"));
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    Desktop::key(u"h"_s);
    ASSERT_TRUE(selects(u"Hill Street 9"_s));
    Desktop::key(u"Home"_s);
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    Desktop::key(u"ctrl+Return"_s);
    EXPECT_TRUE(sorts(home / "Shoots/Elm Road 4"));
    EXPECT_TRUE(goes(u"Cancel"_s));
}

TEST_F(FilePanelTest, TheOpenFolderIsSortedThoughItContainsOnlyClips)
{
    open();
    choose();
    Desktop::doubleClick(shown(u"Elm Road 4"_s));
    ASSERT_TRUE(shows(home / "Shoots/Elm Road 4"));
    (void)shown(u"“Elm Road 4” · 2 clips"_s);
    EXPECT_FALSE(shown(u"kitchen 1.mov"_s).isEnabled()) << "clips are there to be seen";
    Desktop::click(shown(u"Sort This Folder"_s));
    EXPECT_TRUE(sorts(home / "Shoots/Elm Road 4"));
}

TEST_F(FilePanelTest, AClickSelectsAFolderAndOneBesideItDeselects)
{
    open();
    choose();
    Desktop::click(shown(u"Elm Road 4"_s));
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    Desktop::click(shown(u"loose clip.mov"_s));
    ASSERT_TRUE(selects({}));
    (void)shown(u"“Shoots” · 4 clips"_s);
    Desktop::click(shown(u"Elm Road 4"_s));
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    Desktop::click(*findNamed(window->contentItem(), u"folderList"_s)); // its middle is below the last row
    ASSERT_TRUE(selects({}));
    Desktop::click(shown(u"Elm Road 4"_s));
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    Desktop::click(shown(u"Sort This Folder"_s));
    EXPECT_TRUE(sorts(home / "Shoots/Elm Road 4"));
}

TEST_F(FilePanelTest, ATypedPathIsOpenedAndAcceptedByASecondReturn)
{
    open();
    choose();
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    Desktop::key(u"ctrl+l"_s);
    ASSERT_TRUE(hasKeyboard(u"Path"_s));
    Desktop::type(u"~/Shoots/Hill Street 9"_s);
    ASSERT_TRUE(reads(u"Path"_s, u"~/Shoots/Hill Street 9"_s)) << "in place of the old one";
    Desktop::hold(u"Return"_s, 3); // opens, and doesn't accept as well
    ASSERT_TRUE(shows(home / "Shoots/Hill Street 9"));
    ASSERT_TRUE(reads(u"Path"_s, text(home / "Shoots/Hill Street 9")));
    (void)shown(u"“Hill Street 9” · 1 clip"_s);
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(sorts(home / "Shoots/Hill Street 9"));
}

TEST_F(FilePanelTest, ATildeInTheListBeginsAPath)
{
    open();
    choose();
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    Desktop::key(u"asciitilde"_s);
    ASSERT_TRUE(hasKeyboard(u"Path"_s));
    Desktop::type(u"/Videos"_s);
    ASSERT_TRUE(reads(u"Path"_s, u"~/Videos"_s));
    Desktop::key(u"Return"_s);
    EXPECT_TRUE(shows(home / "Videos"));
}

TEST_F(FilePanelTest, AFolderThatCannotBeOpenedIsExplainedAndTheTypedPathStays)
{
    open();
    choose();
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    Desktop::key(u"slash"_s);
    ASSERT_TRUE(hasKeyboard(u"Path"_s));
    Desktop::type(u"nowhere"_s);
    ASSERT_TRUE(reads(u"Path"_s, u"/nowhere"_s));
    Desktop::key(u"Return"_s);
    (void)shown(u"“nowhere” isn't there."_s);
    EXPECT_TRUE(reads(u"Path"_s, u"/nowhere"_s));
    EXPECT_TRUE(shown(u"Sort This Folder"_s).isEnabled());
    fs::permissions(home / "Shoots/Elm Road 4", fs::perms::none);
    fs::permissions(home.path(), fs::perms::all);
    const Unprivileged user;
    Desktop::doubleClick(shown(u"Elm Road 4"_s));
    (void)shown(u"You don't have permission to open “Elm Road 4”."_s);
    EXPECT_EQ(panel().folderPath(), text(home / "Shoots"));
}

TEST_F(FilePanelTest, ThePlacesAreReachedByMouseAndByKeyboard)
{
    open();
    choose();
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    Desktop::click(shown(u"Videos"_s));
    ASSERT_TRUE(shows(home / "Videos"));
    (void)shown(u"There are no folders and no clips here."_s);
    Desktop::key(u"shift+Tab"_s);
    ASSERT_TRUE(hasKeyboard(u"Path"_s));
    Desktop::key(u"shift+Tab"_s);
    ASSERT_TRUE(hasKeyboard(u"Up"_s));
    Desktop::key(u"shift+Tab"_s);
    ASSERT_TRUE(hasKeyboard(u"placeList"_s));
    Desktop::key(u"Up"_s);
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(shows(home.path()));
    Desktop::key(u"Right"_s);
    EXPECT_TRUE(hasKeyboard(u"folderList"_s));
}

TEST_F(FilePanelTest, TabFollowsReadingOrder)
{
    open();
    choose();
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    for (const QString &next :
         {u"Cancel"_s, u"Sort This Folder"_s, u"placeList"_s, u"Up"_s, u"Path"_s, u"folderList"_s}) {
        Desktop::key(u"Tab"_s);
        ASSERT_TRUE(hasKeyboard(next)) << next.toStdString();
    }
}

TEST_F(FilePanelTest, EscapeChoosesNothingAndGivesFocusBack)
{
    open();
    choose();
    ASSERT_TRUE(hasKeyboard(u"folderList"_s));
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(goes(u"Sort This Folder"_s));
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    EXPECT_TRUE(hasKeyboard(u"Choose Folder"_s));
}

TEST_F(FilePanelTest, ThePanelKeepsClicksFromTheWindowBelow)
{
    open();
    choose();
    const QPoint projects = window->mapToGlobal(middleOf(&shown(u"Projects"_s)));
    Desktop::glide(projects, projects);
    Desktop::click(shown(u"Projects"_s));
    Desktop::click(shown(u"Elm Road 4"_s)); // its effect shows that the first click was handled
    ASSERT_TRUE(selects(u"Elm Road 4"_s));
    EXPECT_FALSE(isShown(u"New Project"_s));
}

TEST_F(FilePanelTest, TheShootsFolderIsChosenAbovePreferences)
{
    open();
    app.openPreferences();
    app.setProperty("preferencesTab", u"Import"_s);
    engine.setImportRoot(FileUrl(home / "Shoots"));
    Desktop::click(shown(u"Choose…"_s));
    awaitPanel(home / "Shoots");
    EXPECT_TRUE(isShown(u"Choose where new SD-card imports should be organized."_s));
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Use as Shoots Folder"_s));
    EXPECT_TRUE(app.property("showPreferences").toBool()) << "one thing at a time";
    Desktop::click(shown(u"Choose…"_s));
    awaitPanel(home / "Shoots");
    Desktop::click(shown(u"Up"_s));
    ASSERT_TRUE(shows(home.path()));
    ASSERT_TRUE(selects(u"Shoots"_s));
    Desktop::click(shown(u"Videos"_s));
    ASSERT_TRUE(shows(home / "Videos"));
    Desktop::click(shown(u"Use as Shoots Folder"_s));
    EXPECT_TRUE(waitUntil([&] { return engine.importRoot() == FileUrl(home / "Videos"); }));
    EXPECT_TRUE(app.property("showPreferences").toBool());
}

TEST_F(FilePanelTest, ATextIsSavedUnderTheSuggestedNameAndReplacedOnlyAfterAQuestion)
{
    open();
    exportVocabulary();
    ASSERT_TRUE(hasKeyboard(u"Name of the file"_s));
    Desktop::type(u"words"_s); // in place of the name, the suffix stays
    ASSERT_TRUE(reads(u"Name of the file"_s, u"words.txt"_s));
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(waitUntil([&] { return fs::exists(home / "words.txt"); }));
    EXPECT_EQ(bytesOf(home / "words.txt"), "bed\nsofa");
    ASSERT_TRUE(goes(u"Save"_s));

    (void)home.write("vision-vocabulary.txt", "old");
    exportVocabulary();
    ASSERT_TRUE(reads(u"Name of the file"_s, u"vision-vocabulary.txt"_s));
    Desktop::click(shown(u"Save"_s));
    (void)shown(u"Replace “vision-vocabulary.txt”?"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Replace “vision-vocabulary.txt”?"_s));
    EXPECT_EQ(bytesOf(home / "vision-vocabulary.txt"), "old");
    EXPECT_TRUE(isShown(u"Save"_s)) << "one thing at a time";
    QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval()); // or both presses were a double click
    Desktop::click(shown(u"Save"_s));
    Desktop::click(shown(u"Replace"_s));
    EXPECT_TRUE(waitUntil([&] { return bytesOf(home / "vision-vocabulary.txt") == "bed\nsofa"; }));
    EXPECT_TRUE(goes(u"Save"_s));
}
