// What the engine keeps of shoots from run to run: the recent folders and the sorted projects.
#include "core/SortEngine.h"

#include <algorithm>

#include "core/ClipOrder.h"

namespace larkspan {

namespace {

constexpr std::size_t thumbnailGroup = 4; // shown together as they are sampled
constexpr double thumbnailSize = 448.0;   // pixels, the long side

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
    m_isRemovableImport = false;
    m_importVolumeName.reset();
    setFolder(project->summary.folderPath);
    setPreviewClip(nullptr);
    m_confirmedReview.clear();

    std::vector<ClipPtr> clips;
    std::ranges::transform(project->clips, std::back_inserter(clips), &ClipRecord::toClip);
    sortByDate(clips);
    const int count = static_cast<int>(clips.size());
    setClips(std::move(clips));
    setProgress(count, count);
    selectFirstBin();
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
    setProjects(m_seams.projects->remove(id));
}

void SortEngine::adoptProject(const FileUrl &folder)
{
    m_currentProjectID = projectID(folder);
    const auto project = std::ranges::find(m_projects, *m_currentProjectID, &ProjectSummary::id);
    // A project whose name isn't its folder's was renamed by the editor, and keeps that name.
    const bool wasRenamed = project != m_projects.end() && project->name != folder.lastPathComponent();
    m_projectName = wasRenamed ? project->name : QString();
    Q_EMIT folderChanged();
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
    if (!m_folder || m_clips.empty() || m_seams.projects == nullptr) {
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
    project.clips.reserve(m_clips.size());
    std::ranges::transform(m_clips, std::back_inserter(project.clips),
                           [](const ClipPtr &clip) { return ClipRecord::fromClip(*clip); });
    setProjects(m_seams.projects->save(std::move(project)));
}

void SortEngine::loadThumbnails()
{
    if (m_clips.empty()) {
        return;
    }
    // The editor may change the clips meanwhile, so the task reads copies.
    std::vector<ClipPtr> copies;
    std::ranges::transform(m_clips, std::back_inserter(copies),
                           [](const ClipPtr &clip) { return ClipRecord::fromClip(*clip).toClip(); });
    startTask([this, clips = m_clips, copies = std::move(copies)](const Run &run) {
        for (std::size_t first = 0; first < clips.size() && !run.stop.stop_requested(); first += thumbnailGroup) {
            const auto groupBegin = clips.begin() + static_cast<std::ptrdiff_t>(first);
            const auto groupSize = static_cast<std::ptrdiff_t>(std::min(thumbnailGroup, clips.size() - first));
            std::vector<Thumbnail> pictures(static_cast<std::size_t>(groupSize));
            forEachClip(run, pictures.size(), [&](std::size_t i) {
                const Frames frames = m_seams.sampleFrames(*copies[first + i], 1, thumbnailSize);
                pictures[i] = frames.empty() ? Thumbnail() : Thumbnail(frames.front());
            });
            land(run, [this, group = std::vector(groupBegin, groupBegin + groupSize), pictures = std::move(pictures)] {
                for (std::size_t i = 0; i < group.size(); ++i) {
                    group[i]->thumbnail = pictures[i];
                }
                Q_EMIT clipsChanged();
            });
        }
    });
}

} // namespace larkspan
