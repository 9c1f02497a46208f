#pragma once

#include <functional>
#include <optional>

#include <QtQuick/QQuickWindow>

#include "screens/clips/ClipThumbnails.h"
#include "shell/panels/FileRequest.h"
#include "shell/sheets/CoverageCheck.h"
#include "shell/sheets/DiagnosticsExport.h"
#include "shell/sheets/HandoffExport.h"
#include "shell/sheets/VolumeWatcherForeign.h"
#include "shell/window/AppState.h"
#include "shell/window/WindowEngine.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/Desktop.h"
#include "tests/support/Items.h"
#include "tests/support/WindowDriver.h"

namespace larkspan::test {

// The program's window on a display, over an engine whose media and copies are made by hand.
class ShellWindowTest : public SortEngineTest, protected WindowDriver
{
protected:
    // volumes: where the system tells of its volumes; change: what of the engine's parts is another.
    explicit ShellWindowTest(const std::function<void(SortSeams &)> &change = {},
                             const std::optional<VolumeWatcher::System> &volumes = {})
        : engine(windowSeams(change))
        , watcher(
              volumes.value_or(VolumeWatcher::System{.mountTable = desk.write("mounts"), .deviceTree = desk.path()}))
    {
        qml.addImportPath(QStringLiteral("qrc:/qt/qml"));
        qml.addImageProvider(ClipThumbnails::providerName(), new ClipThumbnails(engine)); // owned by qml
    }

    // Shows the window, past the intro and with the sort tool open unless told otherwise.
    void open()
    {
        openInIntro();
        app.finishIntro();
        app.openTool(QStringLiteral("binnacle"));
        (void)shown(QStringLiteral("Choose Folder"));
    }

    void openInIntro()
    {
        qml.setInitialProperties({
            {QStringLiteral("app"), QVariant::fromValue(&app)},
            {QStringLiteral("engine"), QVariant::fromValue(&engine)},
            {QStringLiteral("volumeWatcher"), QVariant::fromValue(&watcher)},
            {QStringLiteral("fileRequest"), QVariant::fromValue(&fileRequest)},
            {QStringLiteral("diagnostics"), QVariant::fromValue(&diagnostics)},
            {QStringLiteral("coverage"), QVariant::fromValue(&coverage)},
            {QStringLiteral("handoff"), QVariant::fromValue(&handoff)},
            {QStringLiteral("buildNumber"), 7},
        });
        qml.load(QStringLiteral("qrc:/qt/qml/Larkspan/Shell/RootView.qml"));
        ASSERT_FALSE(qml.rootObjects().isEmpty());
        window = qobject_cast<QQuickWindow *>(qml.rootObjects().first());
        ASSERT_TRUE(Desktop::awaitWindow(*window));
    }

    QQuickWindow &driven() const override { return *window; }
    void press(const QQuickItem &item) override { Desktop::click(item); }

    // Opens the window's menu, and closes it without a choice.
    void openMenu()
    {
        Desktop::key(QStringLiteral("F10"));
        (void)shown(QStringLiteral("Preferences…"));
    }
    void closeMenu()
    {
        Desktop::key(QStringLiteral("Escape"));
        ASSERT_TRUE(goes(QStringLiteral("Preferences…")));
    }

    // Returns whether a tool tip on the item, or on one in it, is up.
    static bool isTold(const QQuickItem &item)
    {
        return std::ranges::any_of(item.childItems(), [](const QQuickItem *child) {
            return child->property("told").toBool() || isTold(*child);
        });
    }

    // Sorts a shoot of a kitchen and a clip without frames.
    void sort()
    {
        makeClips({"kitchen 1", "dark 2"});
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }

    // Has exports copy the footage into folders.
    void chooseCopying()
    {
        SortOptions options = engine.options();
        options.fileHandling = FileHandling::copy;
        engine.setOptions(options);
    }

    // Begins an export that copies the sorted clips, and waits until the copy is held by `copying`.
    void startCopy()
    {
        chooseCopying();
        engine.exportEvent();
        copying.awaitArrival();
    }

    SortSeams windowSeams(const std::function<void(SortSeams &)> &change)
    {
        auto parts = seams();
        parts.sampleFrames = [this](const MediaClip &clip, int, double) {
            if (holdsClips) {
                landing.pass();
            }
            return sample(clip);
        };
        parts.copyFiles = [this](const auto &...) {
            ++imported;
            return std::vector<CopyResult>();
        };
        parts.organizeByBin = [this](const auto &...) -> OrganizeAnswer {
            copying.pass();
            ++copied;
            return {};
        };
        parts.copyReport = [](const std::vector<CopyRecord> &copies, const QString &) {
            return QStringLiteral("%1 copies").arg(copies.size());
        };
        parts.chooseHandoff = [this] { handoff.open(); };
        parts.settings = &store;
        if (change) {
            change(parts);
        }
        return parts;
    }

    Gate copying;
    Gate landing; // of clips, while they are held
    std::atomic<bool> holdsClips = false;
    Gate reading; // of timecodes, while they are held
    std::atomic<bool> holdsTimecodes = false;
    std::atomic<int> copied = 0;
    std::atomic<int> imported = 0;
    const TempFolder desk; // the user's own folders
    SettingsStore store{QString::fromStdString((desk / "settings.ini").string())};
    SystemAppearance system;
    AppState app{store, system, LoginItem(desk / "autostart", "/usr/bin/larkspan"), [](bool) {}};
    SortEngine engine;
    VolumeWatcher watcher;
    FileRequest fileRequest{[] { return false; }}; // opens our own panels
    DiagnosticsExport diagnostics{engine,
                                  [] {
                                      return std::vector<QString>{QStringLiteral("sofa"), QStringLiteral("bed")};
                                  },
                                  fileRequest};
    CoverageCheck coverage{engine, store};
    HandoffExport handoff{engine, store, [this](const FileUrl &file) { revealed.push_back(file); },
                          HandoffExport::System{.mountTable = desk / "mounts",
                                                .deviceTree = desk.path(),
                                                .labels = desk.path(),
                                                .readTimecode = [this](const FileUrl &) -> std::optional<Timecode> {
                                                    if (holdsTimecodes) {
                                                        reading.pass();
                                                    }
                                                    return std::nullopt;
                                                }}};
    WindowEngine qml; // last: what it shows goes before what is shown
    QQuickWindow *window = nullptr;
};

} // namespace larkspan::test
