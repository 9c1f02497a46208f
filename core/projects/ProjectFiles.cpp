#include "core/projects/ProjectFiles.h"

#include <algorithm>

#include "core/files/AtomicFile.h"
#include "core/projects/ProjectJson.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t indexLimit = 12;
constexpr qsizetype longestID = 16;             // 64 bits in hexadecimal
constexpr std::uintmax_t longestFile = 1 << 28; // some 500,000 clips; no project, and not worth the memory, beyond

bool isProjectID(const QString &id)
{
    return !id.isEmpty() && id.size() <= longestID &&
           std::ranges::all_of(id, [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); });
}

void dropFrom(std::vector<ProjectSummary> &projects, const QString &id)
{
    std::erase_if(projects, [&id](const ProjectSummary &project) { return project.id == id; });
}

void sortByDate(std::vector<ProjectSummary> &projects)
{
    std::ranges::stable_sort(projects, std::ranges::greater(), &ProjectSummary::savedAt);
}

} // namespace

std::vector<ProjectSummary> ProjectFiles::loadIndex() const
{
    if (keepsNothing()) {
        return {};
    }
    auto projects =
        decodeProjectIndex(contentOf(m_folder / "index.json", longestFile)).value_or(std::vector<ProjectSummary>());
    sortByDate(projects);
    return projects;
}

std::optional<CachedProject> ProjectFiles::load(const QString &id) const
{
    const auto file = fileOf(id);
    return file ? decodeProject(contentOf(*file, longestFile)) : std::nullopt;
}

void ProjectFiles::save(const CachedProject &project) const
{
    if (const auto file = fileOf(project.summary.id)) {
        write(*file, encodeProject(project));
    }
    writeIndex(indexWith(project.summary, loadIndex()));
}

void ProjectFiles::renameInIndex(const QString &id, const QString &name) const
{
    auto projects = loadIndex();
    for (ProjectSummary &project : projects) {
        if (project.id == id) {
            project.name = name;
        }
    }
    writeIndex(projects);
}

void ProjectFiles::remove(const QString &id) const
{
    // The list is written first: if the power fails in between, a project that is still listed can still be opened.
    auto projects = loadIndex();
    dropFrom(projects, id);
    writeIndex(projects);
    if (const auto file = fileOf(id)) {
        std::error_code ignored;
        fs::remove(*file, ignored);
    }
}

std::optional<fs::path> ProjectFiles::fileOf(const QString &id) const
{
    return isProjectID(id) && !keepsNothing() ? std::optional(m_folder / (id.toStdString() + ".json")) : std::nullopt;
}

void ProjectFiles::write(const fs::path &file, const QByteArray &json) const
{
    if (keepsNothing()) {
        return;
    }
    // Without the folder the write fails as well, and a cache that can't be kept is no error.
    [[maybe_unused]] const auto made = makeLastingFolders(m_folder);
    [[maybe_unused]] const auto written =
        writeFileAtomically(file, {json.constData(), static_cast<std::size_t>(json.size())});
}

void ProjectFiles::writeIndex(const std::vector<ProjectSummary> &projects) const
{
    write(m_folder / "index.json", encodeProjectIndex(projects));
}

std::vector<ProjectSummary> indexWith(const ProjectSummary &project, std::vector<ProjectSummary> projects)
{
    dropFrom(projects, project.id);
    projects.insert(projects.begin(), project);
    projects.resize(std::min(projects.size(), indexLimit));
    sortByDate(projects);
    return projects;
}

} // namespace larkspan
