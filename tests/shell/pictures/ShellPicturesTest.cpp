// The surroundings of the tool: the header and its menus, Preferences, and the questions.
#include <fstream>

#include "tests/shell/HomeFolder.h"
#include "tests/shell/pictures/ScreenPictures.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// As of a card that takes long to be read: it is on offer, and its clips aren't counted. Lets the first change pass
// that a background task brings to this thread, the offer, and swallows what follows.
class CountNeverComes : public QObject
{
public:
    CountNeverComes() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A runner's changes are posted to a plain QObject; Qt Quick's own events go to classes with names.
        return event->type() >= QEvent::User && qstrcmp(watched->metaObject()->className(), "QObject") == 0 &&
               ++m_changes > 1;
    }

private:
    int m_changes = 0;
};

} // namespace

TEST_F(ScreenPictures, TheHeader)
{
    openInCorner();
    Desktop::click(shown(u"Projects"_s));
    (void)shown(u"New Project"_s);
    picture(u"projects-none"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"New Project"_s));

    saveProjects();
    sortSample();
    for (const ProjectSummary &project : engine.projects()) {
        mayBeElided.insert(project.name);
    }
    Desktop::click(shown(u"Projects"_s));
    (void)shown(u"Oak Avenue 221"_s);
    picture(u"projects"_s, [this] { Desktop::moveTo(shown(u"Lakeside"_s)); });
    Desktop::key(u"Tab"_s);
    Desktop::key(u"F2"_s);
    (void)shown(u"Save name"_s);
    picture(u"projects-rename"_s);
    Desktop::key(u"Escape"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"New Project"_s));
    Desktop::moveTo(shown(u"Export"_s));

    Desktop::click(shown(u"My Account"_s));
    (void)shown(u"General App Settings"_s);
    picture(u"profile"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"General App Settings"_s));

    Desktop::key(u"F10"_s);
    (void)shown(u"Diagnostics"_s);
    Desktop::key(u"d"_s);
    Desktop::key(u"Right"_s);
    (void)shown(u"Export Vision Vocabulary…"_s);
    picture(u"menu"_s);
    Desktop::key(u"Escape"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Diagnostics"_s));

    engine.reset();
    (void)shown(u"Choose Folder"_s);
    Desktop::click(shown(u"Projects"_s));
    (void)shown(u"Oak Avenue 221"_s);
    picture(u"projects-landing"_s);
}

TEST_F(ScreenPictures, ADiagnosticTextThatCannotBeWritten)
{
    const HomeFolder home;
    std::filesystem::permissions(home.path(), std::filesystem::perms(0555));
    openInCorner();
    {
        const Unprivileged user;
        diagnostics.exportVocabulary();
        ASSERT_TRUE(waitUntil([this] { return fileRequest.browser()->canAccept(); }));
        fileRequest.browser()->accept();
        (void)shown(u"The file couldn't be written"_s);
    }
    ASSERT_TRUE(goes(u"Save"_s));
    picture(u"diagnostics-failed"_s);
}

TEST_F(ScreenPictures, ThePanelForAFolder)
{
    const HomeFolder home;
    std::filesystem::create_directory(home / "Documents");
    std::filesystem::create_directory(home / "Videos");
    for (const char *name : {"2026-11-20 Maple Street 14",
                             "Harbour View 3, penthouse with the roof terrace, both guest "
                             "apartments and all that belongs to the garden",
                             "Lakeside", "Oak Avenue 221"}) {
        (void)home.write(std::string("Shoots/") + name + "/A001_C001.mov");
        mayBeElided.insert(QString::fromUtf8(name));
    }
    for (int i = 1; i < 20; ++i) {
        (void)home.write("Shoots/A001_C0" + std::to_string(i) + "_1120.mov");
    }
    const auto ask = [&](const char *start) {
        fileRequest.askForFolder(
            {.prompt = u"Sort This Folder"_s, .message = u"Choose the folder holding this shoot's raw clips."_s},
            FileUrl(home / start), [](const FileUrl &) {});
    };
    openInCorner();
    ask("Shoots");
    (void)shown(u"“Shoots” · 23 clips"_s);
    picture(u"folder-panel"_s);
    Desktop::key(u"Down"_s);
    (void)shown(u"“2026-11-20 Maple Street 14” · 1 clip"_s);
    picture(u"folder-panel-selected"_s);
    Desktop::key(u"Tab"_s);
    fileRequest.browser()->goTo(u"~/Shots"_s);
    (void)shown(u"“Shots” isn't there."_s);
    picture(u"folder-panel-problem"_s);
    ask("Videos");
    (void)shown(u"There are no folders and no clips here."_s);
    (void)shown(u"“Videos” · no clips"_s);
    picture(u"folder-panel-empty"_s);
}

TEST_F(ScreenPictures, ThePanelForAFile)
{
    const HomeFolder home;
    (void)home.write("Documents/Letters/a.txt");
    (void)home.write("Documents/vision-vocabulary.txt");
    openInCorner();
    diagnostics.exportVocabulary();
    (void)shown(u"Export Vision Vocabulary"_s);
    (void)shown(u"Letters"_s);
    picture(u"file-panel"_s);
    fileRequest.browser()->accept();
    (void)shown(u"Replace “vision-vocabulary.txt”?"_s);
    picture(u"file-panel-replace"_s);
}

TEST_F(ScreenPictures, Preferences)
{
    openInCorner();
    app.openPreferences();
    (void)shown(u"Split repeated rooms"_s);
    picture(u"preferences-sorting"_s);
    engine.setModelTier(ModelTier::cloud);
    picture(u"preferences-sorting-cloud"_s);
    app.setProperty("preferencesTab", u"Import"_s);
    (void)shown(u"Not set"_s);
    picture(u"preferences-import"_s);
    const QString shoots = u"/media/shoots/2026 and everything that is still to be delivered"_s;
    engine.setImportRoot(FileUrl(shoots.toStdString()));
    mayBeElided.insert(shoots);
    (void)shown(shoots);
    picture(u"preferences-import-folder"_s);
    app.setProperty("preferencesTab", u"Account"_s);
    (void)shown(u"Account name"_s);
    picture(u"preferences-account"_s);
    app.setProperty("preferencesTab", u"General"_s);
    (void)shown(u"Boring Mode"_s);
    picture(u"preferences-general"_s);
}

TEST_F(ScreenPictures, TheLauncherAndPreferencesOverIt)
{
    openLauncher();
    picture(u"launcher"_s);
    app.openPreferences();
    (void)shown(u"Larkspan Preferences"_s);
    picture(u"preferences-launcher"_s);
}

TEST_F(ScreenPictures, TheCardOnOffer)
{
    openInCorner();
    std::ofstream table(mounts);
    for (const std::string card : {"EOS_DIGITAL", "UNTITLED"}) {
        for (int i = 0; i < 12; ++i) {
            (void)world.write(card + "/DCIM/100/C" + std::to_string(i) + ".MP4");
        }
        table << "80 27 8:17 / " << (world / card).string() << " rw - exfat source rw\n";
    }
    table.close();
    watcher.startWatching();
    watcher.handleMount(FileUrl(world / "EOS_DIGITAL"));
    (void)shown(u"Set a Shoots folder first"_s);
    picture(u"card-needs-folder"_s);
    engine.setImportRoot(FileUrl(world.path()));
    (void)shown(u"EOS_DIGITAL · 12 clips found. Import and sort it into your Shoots folder?"_s);
    picture(u"card"_s);

    const CountNeverComes full;
    watcher.handleMount(FileUrl(world / "UNTITLED"));
    (void)shown(u"UNTITLED — looking for clips…"_s);
    picture(u"card-looking"_s);
}

TEST_F(ScreenPictures, TheCardOnOfferDuringACopy)
{
    openInCorner();
    sortSample();
    engine.setImportRoot(FileUrl(world.path()));
    startCopy();
    for (int i = 0; i < 12; ++i) {
        (void)world.write("EOS_DIGITAL/DCIM/100/C" + std::to_string(i) + ".MP4");
    }
    std::ofstream(mounts) << "80 27 8:17 / " << (world / "EOS_DIGITAL").string() << " rw - exfat source rw\n";
    watcher.startWatching();
    watcher.handleMount(FileUrl(world / "EOS_DIGITAL"));
    (void)shown(u"EOS_DIGITAL · 12 clips found. Import and sort it into your Shoots folder?"_s);
    (void)shown(u"Importing this card stops the copy that is running."_s);
    picture(u"card-during-copy"_s);
}
