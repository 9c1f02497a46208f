#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/projects/Project.h"

namespace larkspan {

// The project cache as files of one folder: "index.json" with the list that people choose from, and one file per
// project. Failures are swallowed: what can't be read counts as not there, what can't be written isn't kept. Each file
// is replaced in one step, so that another instance of the program finds the old one or the new one, whole; of two
// that save at once, the last one wins. Blocks until the data is on the medium; any thread, one at a time.
class ProjectFiles
{
public:
    // folder: made when something is saved. An empty path keeps nothing.
    explicit ProjectFiles(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    bool keepsNothing() const { return m_folder.empty(); }

    // The latest saved first.
    std::vector<ProjectSummary> loadIndex() const;
    std::optional<CachedProject> load(const QString &id) const;

    // Writes a project and puts it into the index.
    void save(const CachedProject &project) const;
    // Changes a name in the index alone.
    void renameInIndex(const QString &id, const QString &name) const;
    void remove(const QString &id) const;

private:
    // None for what can't be an id: the text comes from a file, and must not lead out of the folder.
    std::optional<std::filesystem::path> fileOf(const QString &id) const;
    void write(const std::filesystem::path &file, const QByteArray &json) const;
    void writeIndex(const std::vector<ProjectSummary> &projects) const;

    const std::filesystem::path m_folder;
};

// The list with a project put first in place of its older self and cut to the length that is kept, then put in order,
// the latest saved first. A clock that was set back moves the new one down, but never out.
std::vector<ProjectSummary> indexWith(const ProjectSummary &project, std::vector<ProjectSummary> projects);

} // namespace larkspan
