#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>

#include <QtCore/QFuture>
#include <QtCore/QTimer>

#include "classify/vision/ModelsOnDemand.h"
#include "classify/vision/VisionClassifier.h"
#include "core/base/LateValue.h"
#include "core/engine/SortEngine.h"
#include "design/SystemMotion.h"
#include "output/VolumeWatcher.h"
#include "shell/desktop/WorkNotice.h"
#include "shell/panels/FileChooserPortal.h"
#include "shell/panels/FileRequest.h"
#include "shell/sheets/CoverageCheck.h"
#include "shell/sheets/DiagnosticsExport.h"
#include "shell/sheets/HandoffExport.h"
#include "shell/window/AppState.h"
#include "shell/window/WindowEngine.h"

class QQuickWindow;

namespace larkspan {

// The program put together: the engine with its real parts, and the window that shows it. Needs a QGuiApplication.
class LarkspanApp : public QObject
{
    Q_OBJECT

public:
    // models: where the networks of the local tier lie; where the program keeps them, if not said.
    // volumes: the files in which the system lists its volumes.
    explicit LarkspanApp(std::optional<std::filesystem::path> models = std::nullopt,
                         VolumeWatcher::System volumes = {});
    ~LarkspanApp() override;

    // Opens the window. False when it can't be made, which is an installation without its QML modules.
    [[nodiscard]] bool open();

    AppState &state() { return m_state; }
    SortEngine &engine() { return *m_engine; }
    VolumeWatcher &volumeWatcher() { return m_volumeWatcher; }
    // None before open().
    QQuickWindow *window() const;

private:
    Q_SLOT void playIntroChime();

    // Reads the models unless they are there. Any thread.
    VisionClassifier localClassifier();
    SortSeams seams();
    // Keeps the design's theme and motion as the state says.
    void followState();
    // Looks out for cards while the program is past its intro, and brings in those that the editor accepts.
    void watchForCards();
    // The key comes when the keyring has answered; a sort under the cloud tier that begins earlier waits for it a
    // while.
    void adoptCloudSettings();
    // Only looks whether the models are there: they are read when a sort needs them.
    void checkModels();
    void reportModels(const ModelError &error);
    // Gives back the memory that starting needed, once the program has come to rest after its intro.
    void watchForEndOfStart();
    // Lets the models go once no sort has needed them for a while.
    void watchForRest();

    std::stop_source m_stop; // of what is still awaited when the program ends
    const std::filesystem::path m_modelFolder;
    ModelsOnDemand m_models;
    QTimer m_modelRest;
    QFuture<std::optional<ModelError>> m_missingModel; // looked for in the background, on a disk that may sleep
    LateValue<QString> m_keyringAnswer;                // for the threads of a sort; m_cloudKey is for this one
    QFuture<QString> m_cloudKey;
    FileChooserPortal m_fileChooser;
    FileRequest m_files;
    SettingsStore m_settings;
    SystemAppearance m_system;
    SystemMotion m_motion;
    AppState m_state;
    ProjectCache m_projects;
    CopyLog m_copyLog;
    std::unique_ptr<SortEngine> m_engine;
    VolumeWatcher m_volumeWatcher;
    DiagnosticsExport m_diagnostics;
    CoverageCheck m_coverage;
    HandoffExport m_handoff;
    WorkNotice m_notice;
    WindowEngine m_qml; // last: its views are destroyed before what they show
};

} // namespace larkspan
