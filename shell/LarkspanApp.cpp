#include "shell/LarkspanApp.h"

#include <mutex>

#include <QtConcurrent/QtConcurrentRun>
#include <QtCore/QFutureWatcher>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickWindow>

#include "classify/cloud/CloudClassifier.h"
#include "classify/cloud/CloudKey.h"
#include "classify/cloud/HttpClient.h"
#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "classify/vision/ModelRequests.h"
#include "classify/vision/VisionClassifier.h"
#include "core/base/FreedMemory.h"
#include "core/copies/CopyJournal.h"
#include "design/LK.h"
#include "design/LKAccessible.h"
#include "output/CopyReport.h"
#include "output/FCPXMLWriter.h"
#include "output/MediaImporter.h"
#include "output/PlacesInBin.h"
#include "screens/clips/ClipThumbnails.h"
#include "shell/desktop/DesktopFiles.h"
#include "shell/window/DisplayScale.h"
#include "shell/window/SoftwareDrawing.h"
#include "sound/SoundCue.h"
#include "sound/SoundEngine.h"

Q_IMPORT_QML_PLUGIN(Larkspan_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_ScreensPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

// A sort waits this long for the keyring before it does without the cloud. A healthy one answers within milliseconds.
constexpr std::chrono::seconds keyringPatience{3};
// The models are kept this long after a sort, since another often follows.
constexpr std::chrono::minutes modelPatience{1};
// The program is at rest this long after its intro.
constexpr std::chrono::seconds startPatience{10};

// A client that the first sort which needs it creates. Later sorts use its open connections.
class LazyClient
{
public:
    std::shared_ptr<const HttpClient> get()
    {
        std::call_once(m_once, [this] { m_client = std::make_shared<const HttpClient>(); });
        return m_client;
    }

private:
    std::once_flag m_once;
    std::shared_ptr<const HttpClient> m_client;
};

QString problemText(const ModelError &error)
{
    return u"The vision models can't be read (%1), so no clip can be recognised: all will be filed under “Unsorted”. "
           u"Run script/fetch-models, or install Larkspan again, and restart it."_s.arg(
               QString::fromStdString(error.file.string()));
}

CopyAnswer copyFiles(const std::vector<FileUrl> &urls, const FileUrl &destination, const CopyOrder &order)
{
    return MediaImporter::copyFiles(urls, destination, order).map_error([](const ImportError &error) {
        return CopyFailure{error.description()};
    });
}

OrganizeAnswer organizeByBin(const std::vector<ClipToOrganize> &clips, const FileUrl &root, bool deleteSources,
                             const CopyOrder &order)
{
    return MediaImporter::organizeByBin(clips, root, deleteSources, order).map_error([](const ImportError &error) {
        return CopyFailure{error.description()};
    });
}

} // namespace

LarkspanApp::LarkspanApp(std::optional<std::filesystem::path> models, VolumeWatcher::System volumes)
    : m_modelFolder(models ? std::move(*models) : VisionModels::shippedFolder())
    , m_models([this] { return VisionModels::load(m_modelFolder); })
    , m_missingModel(QtConcurrent::run([folder = m_modelFolder] { return VisionModels::findMissing(folder); }))
    , m_cloudKey(QtConcurrent::run([this, stop = m_stop.get_token()] {
        QString key = loadCloudKey(stop);
        m_keyringAnswer.give(key);
        return key;
    }))
    , m_files([this] { return m_fileChooser.isThere() && FileChooserPortal::isUsedByQt(); })
    , m_state(m_settings, m_system, LoginItem(), [](bool enabled) { SoundEngine::shared().setEnabled(enabled); })
    , m_engine(std::make_unique<SortEngine>(seams()))
    , m_volumeWatcher(std::move(volumes))
    , m_diagnostics(
          *m_engine,
          [this] {
              m_modelRest.start();
              return localClassifier().supportedIdentifiers();
          },
          m_files)
    , m_coverage(*m_engine, m_settings)
    , m_handoff(*m_engine, m_settings, revealFile, {})
    , m_notice(*m_engine, [this] { return window() && window()->isActive(); })
{
    followState();
    watchForCards();
    watchForEndOfStart();
    watchForRest();
    connect(&m_notice, &WorkNotice::pressed, this, [this] {
        window()->raise();
        window()->requestActivate();
    });
    adoptCloudSettings();
    m_qml.addImportPath(u"qrc:/qt/qml"_s);
    LKAccessible::install(m_qml);
    m_qml.addImageProvider(ClipThumbnails::providerName(), new ClipThumbnails(*m_engine)); // owned by m_qml
}

LarkspanApp::~LarkspanApp()
{
    m_stop.request_stop();
    m_cloudKey.waitForFinished();
    m_missingModel.waitForFinished();
}

bool LarkspanApp::open()
{
    m_qml.setInitialProperties({
        {u"app"_s, QVariant::fromValue(&m_state)},
        {u"engine"_s, QVariant::fromValue(m_engine.get())},
        {u"volumeWatcher"_s, QVariant::fromValue(&m_volumeWatcher)},
        {u"fileRequest"_s, QVariant::fromValue(&m_files)},
        {u"diagnostics"_s, QVariant::fromValue(&m_diagnostics)},
        {u"coverage"_s, QVariant::fromValue(&m_coverage)},
        {u"handoff"_s, QVariant::fromValue(&m_handoff)},
        {u"buildNumber"_s, LARKSPAN_BUILD_NUMBER},
    });
    // Opens the device and synthesises the cues now, since doing so during the intro would make it stutter.
    static_cast<void>(SoundEngine::shared());
    m_qml.load(u"qrc:/qt/qml/Larkspan/Shell/RootView.qml"_s);
    if (!window()) {
        return false;
    }
    connect(window(), SIGNAL(introChimeDue()), this, SLOT(playIntroChime())); // declared in QML
    new DisplayScale(*window());                                              // owned by what it follows
    drawWithoutOpenGLWhereItFails(*window());
    checkModels();
    return true;
}

void LarkspanApp::playIntroChime()
{
    SoundEngine::shared().play(SoundCue::introChime());
}

QQuickWindow *LarkspanApp::window() const
{
    return m_qml.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(m_qml.rootObjects().first());
}

VisionClassifier LarkspanApp::localClassifier()
{
    const auto models = m_models.get();
    if (!models) {
        QMetaObject::invokeMethod(
            this, [this, error = models.error()] { reportModels(error); }, Qt::QueuedConnection);
    }
    return VisionClassifier(models ? std::make_shared<const ModelRequests>(*models) : nullptr);
}

SortSeams LarkspanApp::seams()
{
    return {
        .probeClip = probeClip,
        .sampleFrames = sampleFrames,
        .makeLocalClassifier = [this] { return std::make_shared<const VisionClassifier>(localClassifier()); },
        .awaitCloudKey =
            [this](const std::stop_token &stop) {
                return m_keyringAnswer.waitFor(keyringPatience, stop).value_or(QString());
            },
        .makeCloudClassifier =
            [client = std::make_shared<LazyClient>()](const CloudSettings &settings,
                                                      std::shared_ptr<const FrameClassifier> local) {
                return std::make_shared<const CloudClassifier>(settings, std::move(local), client->get());
            },
        .copyFiles = copyFiles,
        .organizeByBin = organizeByBin,
        .placesInBin = placesInBin,
        .eventText = [](const std::vector<ClipPtr> &clips,
                        const QString &name) { return FCPXMLWriter::event(clips, name); },
        .copyReport = copyReport,
        .openFile = openFile,
        .revealFile = revealFile,
        .chooseFolder =
            [this](const FolderPanel &panel, std::function<void(FileUrl)> chosen) {
                m_files.askForFolder(panel, folderOfShoots(*m_engine), std::move(chosen));
            },
        .chooseHandoff = [this] { m_handoff.open(); },
        .settings = &m_settings,
        .projects = &m_projects,
        .copyLog = &m_copyLog,
        .copyJournal = CopyJournal::defaultFolder(),
    };
}

void LarkspanApp::followState()
{
    const auto followTheme = [this] { LK::instance().setTheme(m_state.theme()); };
    const auto followBoringMode = [this] { LK::instance().setBoringMode(m_state.boringMode()); };
    connect(&m_state, &AppState::themeChanged, this, followTheme);
    connect(&m_state, &AppState::boringModeChanged, this, followBoringMode);
    connect(&m_motion, &SystemMotion::changed, this, [this] { LK::instance().setReducedMotion(m_motion.isReduced()); });
    followTheme();
    followBoringMode();
}

void LarkspanApp::watchForCards()
{
    const auto followPhase = [this] {
        if (m_state.phase() == AppState::Phase::App) {
            m_volumeWatcher.startWatching();
        } else {
            m_volumeWatcher.stopWatching();
        }
    };
    connect(&m_state, &AppState::phaseChanged, this, followPhase);
    connect(&m_volumeWatcher, &VolumeWatcher::accepted, this, [this](const FileUrl &url, const QString &displayName) {
        m_state.openTool(u"binnacle"_s);
        m_engine->importCard(url, displayName);
    });
    followPhase();
}

void LarkspanApp::adoptCloudSettings()
{
    m_engine->setCloudSettings(CloudClassifier::Settings::load(m_settings, QString()));
    auto *watcher = new QFutureWatcher<QString>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        m_engine->setCloudSettings(CloudClassifier::Settings::load(m_settings, watcher->result()));
        watcher->deleteLater();
    });
    watcher->setFuture(m_cloudKey);
}

void LarkspanApp::checkModels()
{
    auto *watcher = new QFutureWatcher<std::optional<ModelError>>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        if (const auto missing = watcher->result()) {
            reportModels(*missing);
        }
        watcher->deleteLater();
    });
    watcher->setFuture(m_missingModel);
}

void LarkspanApp::reportModels(const ModelError &error)
{
    if (window() != nullptr) {
        window()->setProperty("classifierProblem", problemText(error));
    }
}

void LarkspanApp::watchForEndOfStart()
{
    connect(&m_state, &AppState::phaseChanged, this,
            [this] { QTimer::singleShot(startPatience, this, returnFreedMemory); });
}

void LarkspanApp::watchForRest()
{
    m_modelRest.setSingleShot(true);
    m_modelRest.setInterval(modelPatience);
    m_modelRest.callOnTimeout(this, [this] { m_models.letGo(); });
    connect(m_engine.get(), &SortEngine::stageChanged, this, [this] {
        if (m_engine->stage().kind == SortEngine::StageKind::working) {
            m_modelRest.stop();
        } else {
            m_modelRest.start();
        }
    });
}

} // namespace larkspan
