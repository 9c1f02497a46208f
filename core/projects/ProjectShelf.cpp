#include "core/projects/ProjectShelf.h"

#include <algorithm>
#include <utility>

#include "core/projects/ProjectCache.h"

namespace larkspan {

ProjectShelf::ProjectShelf(ProjectCache *cache)
    : m_cache(cache)
    , m_projects(cache != nullptr ? cache->projects() : std::vector<ProjectSummary>())
{}

QString ProjectShelf::ownName(const FileUrl &folder) const
{
    const auto project = std::ranges::find(m_projects, projectID(folder), &ProjectSummary::id);
    // A project whose name isn't its folder's was renamed by the editor.
    const bool wasRenamed = project != m_projects.end() && project->name != folder.lastPathComponent();
    return wasRenamed ? project->name : QString();
}

std::optional<CachedProject> ProjectShelf::open(const QString &id)
{
    if (m_cache == nullptr) {
        return std::nullopt;
    }
    auto project = m_cache->open(id);
    if (!project) {
        m_projects = m_cache->remove(id);
    }
    return project;
}

void ProjectShelf::save(CachedProject project)
{
    if (m_cache != nullptr) {
        m_projects = m_cache->save(std::move(project));
    }
}

bool ProjectShelf::rename(const QString &id, const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || m_cache == nullptr) {
        return false;
    }
    m_projects = m_cache->rename(id, trimmed);
    return true;
}

void ProjectShelf::remove(const QString &id)
{
    if (m_cache != nullptr) {
        m_deleted = m_cache->open(id);
        m_projects = m_cache->remove(id);
    }
}

QString ProjectShelf::deletedProject() const
{
    const auto isIt = [this](const ProjectSummary &project) { return project.id == m_deleted->summary.id; };
    return m_deleted && std::ranges::none_of(m_projects, isIt) ? m_deleted->summary.name : QString();
}

std::optional<QString> ProjectShelf::restore()
{
    if (deletedProject().isEmpty()) {
        return std::nullopt;
    }
    CachedProject project = *std::exchange(m_deleted, std::nullopt);
    const QString id = project.summary.id;
    m_projects = m_cache->save(std::move(project));
    return id;
}

} // namespace larkspan
