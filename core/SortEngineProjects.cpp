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
    if (m_seams.projects == nullptr) {
        return;
    }
    const auto project = m_seams.projects->open(id);
    if (!project) {
        setProjects(m_seams.projects->remove(id));
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
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || m_seams.projects == nullptr) {
        return;
    }
    setProjects(m_seams.projects->rename(id, trimmed));
    if (id == m_currentProjectID) {
        m_projectName = trimmed;
        Q_EMIT folderChanged();
    }
}

void SortEngine::deleteProject(const QString &id)
{
    if (m_seams.projects == nullptr) {
        return;
    }
    if (id == m_currentProjectID) {
        m_currentProjectID.reset();
    }
    m_deletedProject = m_seams.projects->open(id);
    setProjects(m_seams.projects->remove(id));
}

void SortEngine::adoptProject(const FileUrl &folder)
{
    m_currentProjectID = projectID(folder);
    const auto project = std::ranges::find(m_projects, *m_currentProjectID, &ProjectSummary::id);
    // A project whose name isn't its folder's was renamed by the editor, and keeps that name.
    const bool wasRenamed = project != m_projects.end() && project->name != folder.lastPathComponent();
    m_projectName = wasRenamed ? project->name : QString();
    m_copyHistory.adopt(*m_currentProjectID);
    Q_EMIT folderChanged();
}

QString SortEngine::deletedProject() const
{
    const auto isIt = [this](const ProjectSummary &project) { return project.id == m_deletedProject->summary.id; };
    return m_deletedProject && std::ranges::none_of(m_projects, isIt) ? m_deletedProject->summary.name : QString();
}

void SortEngine::restoreProject()
{
    if (deletedProject().isEmpty()) {
        return;
    }
    CachedProject project = *std::exchange(m_deletedProject, std::nullopt);
    if (m_folder && projectID(*m_folder) == project.summary.id) {
        m_currentProjectID = project.summary.id;
    }
    setProjects(m_seams.projects->save(std::move(project)));
}

void SortEngine::rememberRecent(const FileUrl &url)
{
    std::erase_if(m_recents, [&url](const Recent &recent) { return recent.path == url; });
    m_recents.insert(m_recents.begin(), {.name = url.lastPathComponent(), .path = url});
    m_recents.resize(std::min(m_recents.size(), recentsLimit));
    Q_EMIT recentsChanged();
}

void SortEngine::setProjects(const std::vector<ProjectSummary> &projects)
{
    m_projects = projects;
    Q_EMIT projectsChanged();
}

void SortEngine::saveCurrentProject()
{
    if (!m_folder || clips().empty() || m_seams.projects == nullptr) {
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
    setProjects(m_seams.projects->save(std::move(project)));
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
    if (m_importRoot) {
        roots.insert(roots.begin(), *m_importRoot);
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
