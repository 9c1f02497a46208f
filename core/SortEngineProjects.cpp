// SortEngine's part that outlives a run: the recent folders and the sorted projects.
#include "core/SortEngine.h"

#include <algorithm>
#include <utility>

#include "core/ClipPipeline.h"
#include "core/FootageSearch.h"

namespace larkspan {

namespace {

constexpr std::size_t thumbnailGroup = 4; // shown together as they are sampled

} // namespace

void SortEngine::openProject(const QString &id)
{
    const auto project = m_shelf.open(id);
    if (!project) {
        Q_EMIT projectsChanged();
        return;
    }
    cancelTask();
    m_currentProjectID = id;
    m_projectName = project->summary.name;
    m_copyHistory.adopt(id);
    m_isRemovableImport = false;
    m_importVolumeName.reset();
    setFolder(project->summary.folderPath);
    setPreviewClip(nullptr);
    std::vector<ClipPtr> stored;
    std::ranges::transform(project->clips, std::back_inserter(stored), &ClipRecord::toClip);
    setShoot(Shoot(std::move(stored)));
    setProgress(clipCount(), clipCount());
    setSelectedBin(m_shoot.firstBin());
    setStage({.kind = StageKind::results});
    loadThumbnails();
}

void SortEngine::renameProject(const QString &id, const QString &name)
{
    if (!m_shelf.rename(id, name)) {
        return;
    }
    Q_EMIT projectsChanged();
    if (id == m_currentProjectID) {
        m_projectName = name.trimmed();
        Q_EMIT folderChanged();
    }
}

void SortEngine::deleteProject(const QString &id)
{
    if (m_shelf.keepsNothing()) {
        return;
    }
    if (id == m_currentProjectID) {
        m_currentProjectID.reset();
    }
    m_shelf.remove(id);
    Q_EMIT projectsChanged();
}

void SortEngine::restoreProject()
{
    const auto id = m_shelf.restore();
    if (!id) {
        return;
    }
    if (m_folder && projectID(*m_folder) == *id) {
        m_currentProjectID = id;
    }
    Q_EMIT projectsChanged();
}

void SortEngine::adoptProject(const FileUrl &folder)
{
    m_currentProjectID = projectID(folder);
    m_projectName = m_shelf.ownName(folder);
    m_copyHistory.adopt(*m_currentProjectID);
    Q_EMIT folderChanged();
}

void SortEngine::saveCurrentProject()
{
    if (!m_folder || clips().empty() || m_shelf.keepsNothing()) {
        return;
    }
    m_currentProjectID = projectID(*m_folder);
    CachedProject project;
    project.summary = {
        .id = *m_currentProjectID,
        .name = displayName(),
        .folderPath = *m_folder,
        .clipCount = clipCount(),
        .binCount = binCount(),
        .reviewCount = reviewCount(),
        .savedAt = std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now()),
    };
    project.clips.reserve(clips().size());
    std::ranges::transform(clips(), std::back_inserter(project.clips),
                           [](const ClipPtr &clip) { return ClipRecord::fromClip(*clip); });
    m_shelf.save(std::move(project));
    Q_EMIT projectsChanged();
}

void SortEngine::loadThumbnails()
{
    m_lacksThumbnails = false;
    std::vector<ClipPtr> bare;
    std::ranges::copy_if(clips(), std::back_inserter(bare),
                         [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
    if (bare.empty()) {
        return;
    }
    // The editor may change the clips meanwhile, so the task reads copies.
    std::vector<ClipPtr> copies;
    std::ranges::transform(bare, std::back_inserter(copies), [](const ClipPtr &clip) {
        auto copy = ClipRecord::fromClip(*clip).toClip();
        copy->destinationURL = clip->destinationURL;
        copy->foundURL = clip->foundURL;
        return copy;
    });
    std::vector<FileUrl> roots{*m_folder};
    if (importRoot()) {
        roots.insert(roots.begin(), *importRoot());
    }
    m_lacksThumbnails = true;
    m_looksForFootage = true;
    m_tasks.start([this, bare = std::move(bare), copies = std::move(copies), roots = std::move(roots)](const Run &run) {
        lookForFootage(run, bare, copies, roots);
        sampleThumbnails(run, bare, copies);
        m_tasks.land(run, [this] { m_lacksThumbnails = false; });
    });
}

void SortEngine::lookForFootage(const Run &run, std::span<const ClipPtr> clips, std::span<const ClipPtr> copies,
                                std::span<const FileUrl> roots)
{
    const auto found = findMovedFootage(copies, roots, m_seams, run.stop);
    for (std::size_t i = 0; i < found.size(); ++i) {
        copies[i]->foundURL = found[i] ? found[i] : copies[i]->foundURL;
    }
    m_tasks.land(run, [this, all = std::vector(clips.begin(), clips.end()), found] {
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i]->foundURL = found[i] ? found[i] : all[i]->foundURL;
        }
        m_looksForFootage = false;
        if (std::exchange(m_exportsOnceFound, false)) {
            exportEvent();
        }
    });
}

void SortEngine::sampleThumbnails(const Run &run, std::span<const ClipPtr> clips, std::span<const ClipPtr> copies)
{
    for (std::size_t first = 0; first < clips.size() && !run.isStopped(); first += thumbnailGroup) {
        const auto group = clips.subspan(first, std::min(thumbnailGroup, clips.size() - first));
        std::vector<Thumbnail> pictures(group.size());
        m_tasks.forEach(run, group.size(), [&](std::size_t i) {
            ClipRecord record = ClipRecord::fromClip(*copies[first + i]);
            record.path = copies[first + i]->footageURL();
            const Frames frames = m_seams.sampleFrames(*record.toClip(), 1, frameMaxDimension);
            pictures[i] = frames.empty() ? Thumbnail() : Thumbnail(frames.front());
        });
        m_tasks.land(run, [this, landed = std::vector(group.begin(), group.end()), pictures = std::move(pictures)] {
            for (std::size_t i = 0; i < landed.size(); ++i) {
                landed[i]->thumbnail = pictures[i];
            }
            Q_EMIT clipsChanged();
        });
    }
}

} // namespace larkspan
