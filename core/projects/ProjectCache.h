#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include <QtCore/QThreadPool>

#include "core/projects/ProjectFiles.h"

namespace larkspan {

// The sorted shoots that can be opened again without sorting. Saving answers at once: the list is brought up to date
// and a thread of its own writes the files, in order, a project that is saved again before its turn once. Everything
// else waits for what is still to be written. Main thread.
class ProjectCache
{
public:
    explicit ProjectCache(const std::filesystem::path &folder = defaultFolder());
    // Waits until all is on the medium.
    ~ProjectCache();
    ProjectCache(const ProjectCache &) = delete;
    ProjectCache &operator=(const ProjectCache &) = delete;

    // "Larkspan/Projects" in the user's data folder; empty where there is none.
    static std::filesystem::path defaultFolder();

    // The list, the latest saved first. What changes the cache gives the list as it then stands.
    const std::vector<ProjectSummary> &projects() const { return m_projects; }

    const std::vector<ProjectSummary> &save(CachedProject project);
    // None if there is no such project, or its file is damaged.
    std::optional<CachedProject> open(const QString &id);
    // Keeps the date, and so the order.
    const std::vector<ProjectSummary> &rename(const QString &id, const QString &name);
    const std::vector<ProjectSummary> &remove(const QString &id);

    // Waits until all is on the medium.
    void flush();

private:
    void writePending();

    const ProjectFiles m_files;
    std::vector<ProjectSummary> m_projects;

    std::mutex m_mutex; // guards what follows
    std::vector<CachedProject> m_pending;
    bool m_isWriting = false;

    QThreadPool m_writer; // one thread
};

} // namespace larkspan
