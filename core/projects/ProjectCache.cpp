#include "core/projects/ProjectCache.h"

#include <algorithm>

#include <QtCore/QFile>

#include "core/base/Handover.h"
#include "core/files/UserFolders.h"

namespace larkspan {

ProjectCache::ProjectCache(const std::filesystem::path &folder) : m_files(folder), m_projects(m_files.loadIndex())
{
    m_writer.setMaxThreadCount(1);
}

ProjectCache::~ProjectCache()
{
    flush();
}

std::filesystem::path ProjectCache::defaultFolder()
{
    return dataFolder("Projects");
}

const std::vector<ProjectSummary> &ProjectCache::save(CachedProject project)
{
    if (m_files.keepsNothing()) {
        return m_projects;
    }
    const std::lock_guard lock(m_mutex);
    if (!m_isWriting) {
        m_projects = m_files.loadIndex(); // another instance may have saved
    }
    m_projects = indexWith(project.summary, std::move(m_projects));

    const auto waiting = std::ranges::find_if(
        m_pending, [&project](const CachedProject &older) { return older.summary.id == project.summary.id; });
    if (waiting != m_pending.end()) {
        *waiting = std::move(project);
    } else {
        m_pending.push_back(std::move(project));
    }
    if (!m_isWriting) {
        m_isWriting = true;
        m_writer.start(new PoolJob([this] { writePending(); }));
    }
    return m_projects;
}

std::optional<CachedProject> ProjectCache::open(const QString &id)
{
    flush();
    return m_files.load(id);
}

const std::vector<ProjectSummary> &ProjectCache::rename(const QString &id, const QString &name)
{
    if (auto project = open(id)) {
        project->summary.name = name;
        return save(std::move(*project));
    }
    m_files.renameInIndex(id, name);
    m_projects = m_files.loadIndex();
    return m_projects;
}

const std::vector<ProjectSummary> &ProjectCache::remove(const QString &id)
{
    flush();
    m_files.remove(id);
    m_projects = m_files.loadIndex();
    return m_projects;
}

void ProjectCache::flush()
{
    m_writer.waitForDone();
}

void ProjectCache::writePending()
{
    for (;;) {
        std::optional<CachedProject> project;
        {
            const std::lock_guard lock(m_mutex);
            if (m_pending.empty()) {
                m_isWriting = false;
                return;
            }
            project = std::move(m_pending.front());
            m_pending.erase(m_pending.begin());
        }
        m_files.save(*project);
    }
}

} // namespace larkspan
