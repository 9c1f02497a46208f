#pragma once

#include <optional>
#include <vector>

#include "core/projects/Project.h"

namespace larkspan {

class ProjectCache;

// The list of sorted shoots that can be opened again, and the one that was deleted last, which can be put back. Empty
// without a cache. Main thread.
class ProjectShelf
{
public:
    // cache: may be null; outlives the shelf.
    explicit ProjectShelf(ProjectCache *cache);

    bool keepsNothing() const { return m_cache == nullptr; }
    // The latest saved first.
    const std::vector<ProjectSummary> &projects() const { return m_projects; }
    // The editor's own name for this folder's project; "" if it has none, or the folder's.
    QString ownName(const FileUrl &folder) const;

    // None if it can't be read; it then leaves the list.
    std::optional<CachedProject> open(const QString &id);
    void save(CachedProject project);
    // Blanks at the ends are cut off; false for a name of nothing else.
    bool rename(const QString &id, const QString &name);
    void remove(const QString &id);

    // The name of the project that restore() would put back; "" if there is none: it couldn't be read any more, or its
    // folder has been sorted again since.
    QString deletedProject() const;
    // Puts the project that was removed last back where it was. Returns its id; none if there is none.
    std::optional<QString> restore();

private:
    ProjectCache *const m_cache;
    std::vector<ProjectSummary> m_projects;
    std::optional<CachedProject> m_deleted; // the last one
};

} // namespace larkspan
