#include <algorithm>

#include "core/copies/CardFolder.h"
#include "core/engine/SortEngineParts.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr int coresLeftFree = 2;
constexpr int leastWidth = 2;
constexpr int mostWidth = 6; // a large machine must not open dozens of decoders, or requests to a model, at once

// One of the folders is in the other, or they are the same. By their names alone.
bool overlap(const std::filesystem::path &a, const std::filesystem::path &b)
{
    const auto text = [](const std::filesystem::path &path) { return (path / "").lexically_normal().native(); };
    return text(a).starts_with(text(b)) || text(b).starts_with(text(a));
}

} // namespace

SortEngine::SortEngine(SortSeams seams, int activeProcessorCount, QObject *parent)
    : QObject(parent)
    , m_width(std::clamp(activeProcessorCount - coresLeftFree, leastWidth, mostWidth))
    , m_shelf(seams.projects)
    , m_settings(seams.settings)
    , m_parts(std::make_unique<Parts>(*this, std::move(seams)))
{
    connect(this, &SortEngine::clipsChanged, this, &SortEngine::canExportChanged);
    connect(this, &SortEngine::targetChanged, this, &SortEngine::canExportChanged);
    connect(this, &SortEngine::stageChanged, this, &SortEngine::editsChanged);
    m_parts->copies.lookAtEarlierRuns();
}

SortEngine::~SortEngine() = default;

void SortEngine::sortFolder(const FileUrl &url)
{
    if (m_folder && overlap(url.path(), m_folder->path())) {
        m_parts->cards.keepFolderName(); // the sort reads it under this name
    }
    cancelTask();
    if (url != m_folder) { // the same once more is still what came from its card
        m_isRemovableImport = false;
        m_importVolumeName.reset();
    }
    beginWorking(url);
    adoptProject(url);
    m_settings.rememberRecent(url);
    Q_EMIT recentsChanged();
    m_parts->tasks.start([this, url](const TaskRunner::Run &run) { m_parts->sorting.run(run, url); });
}

void SortEngine::chooseFolder()
{
    const FolderPanel panel{.prompt = u"Sort This Folder"_s,
                            .message = u"Choose the folder holding this shoot's raw clips."_s};
    m_parts->seams.chooseFolder(panel, [this](const FileUrl &url) { sortFolder(url); });
}

void SortEngine::chooseImportRoot()
{
    const FolderPanel panel{.prompt = u"Use as Shoots Folder"_s,
                            .message = u"Choose where new SD-card imports should be organized."_s};
    m_parts->seams.chooseFolder(panel, [this](const FileUrl &url) { setImportRoot(url); });
}

void SortEngine::importCard(const FileUrl &source, const QString &volumeName)
{
    if (!importRoot()) {
        return;
    }
    std::error_code unreachable; // a folder that can't even be looked at isn't available either
    if (!std::filesystem::exists(importRoot()->path(), unreachable)) {
        setStage({.kind = StageKind::failed,
                  .text = u"Your Shoots folder isn't available right now — check it's connected, then try again."_s});
        return;
    }
    cancelTask();
    const FileUrl destination = datedImportFolder(volumeName, *importRoot(), QDate::currentDate());
    m_isRemovableImport = true;
    m_importVolumeName = volumeName;
    if (options().fileHandling == FileHandling::inPlace) {
        // A card's clips have no place to stay once it is ejected, so the setting changes for good.
        SortOptions copying = options();
        copying.fileHandling = FileHandling::copy;
        setOptions(copying);
    }
    beginWorking(destination);
    m_settings.rememberRecent(destination);
    Q_EMIT recentsChanged();
    m_parts->cards.start({source, volumeName, destination, options().verifyLevel});
}

void SortEngine::reset()
{
    m_parts->cards.keepFolderName();
    dropShoot();
}

void SortEngine::resetToQuit()
{
    dropShoot();
}

void SortEngine::dropShoot()
{
    cancelTask();
    setFolder(std::nullopt);
    clearClips();
    setPreviewClip(nullptr);
    m_parts->copies.showRecordsOf({});
    m_currentProjectID.reset();
    m_projectName.clear();
    m_isRemovableImport = false;
    m_importVolumeName.reset();
    Q_EMIT folderChanged();
    setStage({.kind = StageKind::empty});
}

void SortEngine::sortAgain()
{
    if (m_folder) {
        sortFolder(FileUrl(*m_folder));
    }
}

void SortEngine::cancelTask()
{
    m_parts->tasks.cancel();
    m_parts->copies.history().setProgress(std::nullopt);
    m_parts->footage.cancel();
}

void SortEngine::clearClips()
{
    m_parts->footage.forget();
    setShoot({});
    setSelectedBin(std::nullopt);
    setProgress(0, 0);
}

void SortEngine::beginWorking(const FileUrl &folder)
{
    setFolder(folder);
    clearClips();
    m_parts->copies.showRecordsOf({});
    setStage({.kind = StageKind::working});
}

} // namespace larkspan
