// Every screen and overlay of the program with a real shoot in it, at the sizes that a window has: nothing lies over
// something else, is cut short or falls out of the window. LARKSPAN_PICTURES=FOLDER keeps what is shown, in both
// themes.
#include <fstream>

#include <QtCore/QMimeData>
#include <QtGui/QDragEnterEvent>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include "core/RoomLabel.h"
#include "tests/output/DeviceTree.h"
#include "tests/shell/SampleShoot.h"
#include "tests/shell/ShellWindow.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Layout.h"
#include "tests/support/Unprivileged.h"

Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// Before the window's fixture, which hands them on.
struct SampleWorld
{
    SampleWorld() { tree.addCardReader("8:17"); }

    DeviceTree tree;
    const TempFolder world;
    const fs::path mounts = world.write("mounts");
    Gate sampling;
    std::atomic<bool> isHeldBack = false;
};

class ScreenPictures : protected SampleWorld, public ShellWindowTest
{
protected:
    ScreenPictures()
        : ShellWindowTest([this](SortSeams &parts) { useSample(parts); },
                          VolumeWatcher::System{.mountTable = mounts, .deviceTree = tree.path()})
    {
        QObject::connect(&app, &AppState::themeChanged, &app, [this] { LK::instance().setTheme(app.theme()); });
    }
    ~ScreenPictures() override
    {
        LK::instance().setTheme(LK::Theme::Dark);
        sampling.open(1000);
        copying.open(1000);
    }

    void useSample(SortSeams &parts)
    {
        parts.probeClip = probeSample;
        parts.makeLocalClassifier = makeSampleClassifier;
        parts.sampleFrames = [this](const MediaClip &clip, int, double) {
            if (isHeldBack) {
                sampling.pass();
            }
            return framesOfSample(clip);
        };
        parts.organizeByBin = [this](const auto &clips, const auto &, bool, VerifyLevel,
                                     const ProgressCallback &progress, const auto &) -> OrganizeAnswer {
            progress(9, static_cast<int>(clips.size()));
            copying.pass();
            return {};
        };
    }

    // Where the display has room for the largest.
    void openInCorner()
    {
        open();
        window->setPosition(0, 0);
        countFrames();
    }
    void countFrames()
    {
        QObject::connect(window, &QQuickWindow::frameSwapped, window, [this] { ++frames; });
    }

    // As an editor names a shoot.
    void makeShoot()
    {
        for (const std::string &name : sampleNames()) {
            (void)world.write("2026-11-20 Maple Street 14/" + name);
        }
    }
    FileUrl maple() const { return FileUrl(world / "2026-11-20 Maple Street 14"); }

    void sortSample()
    {
        makeShoot();
        sortWhatIsMade();
    }

    void sortWhatIsMade()
    {
        SortOptions options = engine.options();
        options.tagOpenPlanTwice = false; // so that close calls are the editor's
        engine.setOptions(options);
        engine.sortFolder(maple());
        ASSERT_TRUE(reaches(engine, StageKind::results));
        engine.toggleExtraBin(clipNamed(u"A001_C003_1120"_s)->id, u"Dining Room"_s);
        engine.toggleExtraBin(clipNamed(u"A001_C006_1120"_s)->id, u"Hallway / Stairs"_s);
    }
    ClipPtr clipNamed(const QString &name) const
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        return found == engine.clips().end() ? nullptr : *found;
    }

    void saveProjects()
    {
        int age = 0;
        for (const auto &[name, clips, bins, review] :
             {std::tuple{u"Harbour View 3, penthouse with the roof terrace and both guest apartments"_s, 164, 17, 12},
              {u"Oak Avenue 221"_s, 74, 12, 0},
              {u"Lakeside"_s, 48, 9, 3},
              {u"2026-10-02 Sea Road"_s, 31, 8, 1},
              {u"Foothill Blvd"_s, 55, 11, 0},
              {u"Mill Lane 9"_s, 23, 7, 2}}) {
            (void)cache.save({.summary = {.id = QString::number(++age),
                                          .name = name,
                                          .folderPath = FileUrl(world / name.toStdString()),
                                          .clipCount = clips,
                                          .binCount = bins,
                                          .reviewCount = review,
                                          .savedAt = Date(std::chrono::hours(age))},
                              .clips = {}});
        }
    }

    // The window at each of its sizes, at rest: looked through, and kept if pictures are wanted. What the pointer does
    // there is done anew at each size.
    void picture(const QString &name, const std::function<void()> &hand = {})
    {
        for (const QSize size : sizes()) {
            window->resize(size);
            ASSERT_TRUE(waitUntil([&] { return window->size() == size; }));
            if (hand) {
                hand();
            }
            ASSERT_TRUE(rests());
            EXPECT_THAT(layoutFaults(*window, mayBeElided), IsEmpty())
                << name.toStdString() << " at " << size.width() << " by " << size.height();
            keep(name, size);
        }
    }

    // What people call things may be too long for its place.
    std::set<QString> mayBeElided;

    static QList<QSize> sizes()
    {
        // Twice as many pixels a point leave no room for the largest on the display.
        return qGuiApp->devicePixelRatio() > 1 ? QList<QSize>{{980, 640}, {1180, 790}}
                                               : QList<QSize>{{980, 640}, {1180, 790}, {2560, 1440}};
    }

private:
    int frames = 0;

    // Until several frames in a row show the same.
    bool rests()
    {
        constexpr int enough = 4;
        constexpr int most = 500;
        std::string last;
        int alike = 0;
        for (int frame = 0; frame < most && alike < enough; ++frame) {
            const int before = frames;
            window->requestUpdate();
            if (!waitUntil([&] { return frames > before; })) {
                return false;
            }
            const std::string now = layoutOf(*window);
            alike = std::exchange(last, now) == now ? alike + 1 : 0;
        }
        return alike == enough;
    }

    void keep(const QString &name, QSize size)
    {
        const QString pictures = qEnvironmentVariable("LARKSPAN_PICTURES");
        if (pictures.isEmpty()) {
            return;
        }
        for (const bool light : {true, false}) { // dark is what the next picture begins with
            app.setAppearance(light ? LK::Appearance::AlwaysLight : LK::Appearance::AlwaysDark);
            QImage last;
            QImage shown;
            for (int i = 0; i < 4 && (shown.isNull() || shown != last); ++i) { // what breathes never rests
                last = shown;
                ASSERT_TRUE(rests());
                shown = window->grabWindow();
            }
            shown.save(u"%1/%2-%3x%4@%5-%6.png"_s.arg(pictures, name)
                           .arg(size.width())
                           .arg(size.height())
                           .arg(qGuiApp->devicePixelRatio())
                           .arg(light ? u"light"_s : u"dark"_s));
        }
    }
};

} // namespace

TEST_F(ScreenPictures, TheLanding)
{
    openInCorner();
    picture(u"landing"_s);
    window->setProperty(
        "classifierProblem",
        u"The vision models can't be read (/usr/share/larkspan/models/objects.onnx), so no clip can be recognised: all "
        u"will "
        u"be filed under “Unsorted”. Run script/fetch-models, or install Larkspan again, and restart it."_s);
    picture(u"landing-no-models"_s);
    window->setProperty("classifierProblem", QString());

    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.path()))});
    QDragEnterEvent enter(QPoint(490, 320), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter);
    picture(u"landing-drop"_s);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(window, &leave);

    Desktop::click(shown(u"What this model does"_s));
    (void)shown(u"Local: On This Mac"_s);
    picture(u"model-note-local"_s);
    engine.setModelTier(ModelTier::cloud);
    (void)shown(u"Skyreader"_s);
    picture(u"model-note-cloud"_s);
}

TEST_F(ScreenPictures, TheSortAtWork)
{
    makeShoot();
    isHeldBack = true;
    openInCorner();
    engine.sortFolder(maple());
    (void)shown(u"Sorting 2026-11-20 Maple Street 14"_s);
    picture(u"working-first"_s);
    sampling.open(14);
    ASSERT_TRUE(waitUntil([this] { return engine.clips().size() >= 12; }));
    picture(u"working"_s);
}

TEST_F(ScreenPictures, TheFailures)
{
    openInCorner();
    engine.sortFolder(FileUrl(world.path()));
    (void)shown(u"Choose Another Folder"_s);
    mayBeElided = {};
    picture(u"empty-folder"_s);
    engine.setImportRoot(FileUrl(world / "gone"));
    engine.importCard(FileUrl(world.path()), u"CARD"_s);
    (void)shown(u"Back to the Clips"_s);
    picture(u"failed"_s);
    Desktop::click(shown(u"Back to the Clips"_s));
    picture(u"results-empty"_s);
}

TEST_F(ScreenPictures, TheResults)
{
    openInCorner();
    sortSample();
    engine.setSelectedBin(u"Kitchen"_s);
    (void)shown(u"A001_C003_1120"_s);
    picture(u"results-bin"_s);
    picture(u"results-hover"_s, [this] { Desktop::moveTo(shown(u"A001_C003_1120"_s)); });
    picture(u"results-move"_s, [this] {
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        Desktop::moveTo(shown(u"A001_C004_1120"_s));
        Desktop::click(shown(u"Move"_s));
        (void)shown(u"Amenities / Other"_s);
    });
    Desktop::key(u"Escape"_s);
    picture(u"results-menu"_s, [this] {
        Desktop::moveTo(shown(u"Export"_s)); // from an entry whose menu would open again
        Desktop::key(u"Escape"_s);           // the inner menu, then the outer one
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Reveal in Finder"_s));
        findNamed(window->contentItem(), u"clips"_s)->forceActiveFocus(Qt::TabFocusReason);
        Desktop::key(u"Home"_s);
        Desktop::key(u"Menu"_s);
        Desktop::click(shown(u"Also Tag"_s));
        (void)shown(u"Amenities / Other"_s);
    });
    Desktop::key(u"Escape"_s);
    Desktop::key(u"Escape"_s);
    engine.setSelectedBin(u"Aerial / Drone"_s);
    (void)shown(u"DJI_0021"_s);
    picture(u"results-aerial"_s);
    SortOptions options = engine.options();
    options.showClipCounts = false;
    engine.setOptions(options);
    engine.confirmAll();
    picture(u"results-quiet"_s);
}

TEST_F(ScreenPictures, TheReview)
{
    mayBeElided.insert(u"A001_C020 lens cap still on, first take after lunch break.mov"_s);
    openInCorner();
    sortSample();
    engine.setSelectedBin(reviewKey());
    (void)shown(u"Confirm All"_s);
    picture(u"review"_s);
    picture(u"review-hover"_s, [this] { Desktop::moveTo(shown(u"A001_C005_1120.mov"_s)); });
    Desktop::key(u"Tab"_s); // out of the sidebar
    Desktop::key(u"Tab"_s);
    picture(u"review-picker"_s, [this] {
        Desktop::key(u"Escape"_s);
        ASSERT_TRUE(goes(u"Amenities / Other"_s));
        findNamed(window->contentItem(), u"review"_s)->forceActiveFocus(Qt::TabFocusReason);
        Desktop::key(u"Home"_s);
        Desktop::key(u"m"_s);
        (void)shown(u"Amenities / Other"_s);
    });
    Desktop::key(u"Escape"_s);
    for (const auto &clip : engine.clipsInBin(reviewKey())) {
        if (clip != engine.clipsInBin(reviewKey()).front()) {
            engine.confirm(clip->id);
        }
    }
    (void)shown(u"1 clip Binnacle wasn't sure about"_s);
    picture(u"review-one"_s);
}

TEST_F(ScreenPictures, ThePreview)
{
    openInCorner();
    makeShoot();
    fs::copy_file(sharedMedia("kitchen.mp4",
                              "-f lavfi -i testsrc2=s=960x540:r=2:d=600 -f lavfi -i sine=d=600 -c:v libx264 "
                              "-preset ultrafast -pix_fmt yuv420p -c:a aac"),
                  maple().path() / "A001_C004_1120.mov", fs::copy_options::overwrite_existing);
    sortWhatIsMade();
    engine.setPreviewClip(clipNamed(u"A001_C004_1120"_s));
    (void)shown(u"8.0s · 3840 × 2160 · 59.94 fps"_s);
    picture(u"preview"_s);
    Desktop::click(shown(u"No second bin"_s));
    (void)shown(u"Amenities / Other"_s);
    picture(u"preview-second-bin"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Amenities / Other"_s));
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"Pause"_s);
    picture(u"preview-playing"_s, [this] { Desktop::moveTo(shown(u"Pause"_s)); });
    Desktop::key(u"space"_s);
    (void)shown(u"Play"_s);
    picture(u"preview-paused"_s);
    engine.setPreviewClip(clipNamed(u"A001_C012_1120"_s)); // upright
    (void)shown(u"7.4s · 2160 × 3840 · 59.94 fps"_s);
    picture(u"preview-upright"_s);
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"This clip can't be played. Its file may be damaged, or of a kind that can't be played here."_s);
    picture(u"preview-unplayable"_s);
    engine.closePreview();
    fs::remove(maple().path() / "A001_C020 lens cap still on, first take after lunch break.mov");
    engine.setPreviewClip(clipNamed(u"A001_C020 lens cap still on, first take after lunch break"_s));
    mayBeElided.insert(u"A001_C020 lens cap still on, first take after lunch break.mov"_s);
    (void)shown(u"2.1s · 3840 × 2160 · 59.94 fps"_s);
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s);
    picture(u"preview-gone"_s);
}

TEST_F(ScreenPictures, TheExport)
{
    openInCorner();
    sortSample();
    SortOptions options = engine.options();
    options.fileHandling = FileHandling::copy;
    options.openEditorAfterExport = false;
    engine.setOptions(options);
    engine.exportEvent();
    copying.awaitArrival();
    (void)shown(u"Copying 2026-11-20 Maple Street 14"_s);
    picture(u"organizing"_s);
    window->close();
    (void)shown(u"Footage is still being copied"_s);
    picture(u"close-question"_s);
    Desktop::click(shown(u"Finish, Then Close"_s));
    (void)shown(u"Closing when the copy is done…"_s);
    picture(u"close-waiting"_s);
}

TEST_F(ScreenPictures, TheEventWritten)
{
    openInCorner();
    sortSample();
    SortOptions options = engine.options();
    options.openEditorAfterExport = false;
    engine.setOptions(options);
    engine.exportEvent();
    (void)shown(u"Event created"_s);
    picture(u"done"_s);
}

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
    mayBeElided.insert(engine.projects().back().name);
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

    Desktop::click(shown(u"My Account"_s));
    (void)shown(u"General App Settings"_s);
    picture(u"profile"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"General App Settings"_s));

    Desktop::key(u"F10"_s);
    (void)shown(u"Diagnostics"_s);
    Desktop::key(u"Down"_s);
    Desktop::key(u"Down"_s);
    Desktop::key(u"Right"_s);
    (void)shown(u"Export Vision Vocabulary…"_s);
    picture(u"menu"_s);
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

TEST_F(ScreenPictures, PreferencesOverTheLauncher)
{
    openInIntro();
    countFrames();
    app.finishIntro();
    (void)shown(u"Open Binnacle"_s);
    app.openPreferences();
    (void)shown(u"Larkspan Preferences"_s);
    picture(u"preferences-launcher"_s);
}

TEST_F(ScreenPictures, TheCardOnOffer)
{
    openInCorner();
    for (int i = 0; i < 12; ++i) {
        (void)world.write("EOS_DIGITAL/DCIM/100/C" + std::to_string(i) + ".MP4");
    }
    std::ofstream(mounts) << "80 27 8:17 / " << (world / "EOS_DIGITAL").string() << " rw - exfat source rw\n";
    watcher.startWatching();
    watcher.handleMount(FileUrl(world / "EOS_DIGITAL"));
    (void)shown(u"Set a Shoots folder first"_s);
    picture(u"card-needs-folder"_s);
    engine.setImportRoot(FileUrl(world.path()));
    (void)shown(u"EOS_DIGITAL · 12 clips found. Import and sort it into your Shoots folder?"_s);
    picture(u"card"_s);
}
