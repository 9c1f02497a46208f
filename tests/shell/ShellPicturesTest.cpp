// What surrounds the tool: the header and its menus, Preferences, and what is asked about.
#include <fstream>

#include "tests/shell/ScreenPictures.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// As of a card that takes long to be read: it is on offer, and its clips aren't counted.
class CountNeverComes : public QObject
{
public:
    explicit CountNeverComes(VolumeWatcher &watcher) { watcher.installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        return event->type() >= QEvent::User && ++m_changes > 1; // the offer passes
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
    Desktop::key(u"Down"_s);
    Desktop::key(u"Down"_s);
    Desktop::key(u"Down"_s);
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
    openInCorner();
    auto *panel = window->findChild<QObject *>(u"vocabularyPanel"_s);
    ASSERT_NE(panel, nullptr);
    {
        const Unprivileged user;
        panel->setProperty("selectedFile", QUrl::fromLocalFile(u"/nowhere/vision-vocabulary.txt"_s));
        QMetaObject::invokeMethod(panel, "accepted");
    }
    (void)shown(u"The file couldn't be written"_s);
    picture(u"diagnostics-failed"_s);
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

    CountNeverComes full(watcher);
    watcher.handleMount(FileUrl(world / "UNTITLED"));
    (void)shown(u"UNTITLED — looking for clips…"_s);
    picture(u"card-looking"_s);
}
