// The sorted projects: opening, naming, deleting and saving them.
#include <algorithm>
#include <utility>

#include "core/engine/SortEngineParts.h"

namespace larkspan {

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
    m_parts->copies.showRecordsOf(id);
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
    m_parts->footage.load();
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
    m_parts->copies.showRecordsOf(*m_currentProjectID);
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

} // namespace larkspan
