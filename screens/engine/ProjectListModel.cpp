#include "screens/engine/ProjectListModel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

QString detailOf(const ProjectSummary &project)
{
    QStringList parts{u"%1 clips"_s.arg(project.clipCount), u"%1 bins"_s.arg(project.binCount)};
    if (project.reviewCount > 0) {
        parts.append(u"%1 to review"_s.arg(project.reviewCount));
    }
    return parts.join(u" · "_s);
}

} // namespace

void ProjectListModel::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::projectsChanged, this, &ProjectListModel::refresh);
    connect(&engine, &SortEngine::folderChanged, this, &ProjectListModel::refresh);
}

int ProjectListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ProjectListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const auto &[project, isCurrent] = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ProjectIdRole:
        return project.id;
    case Qt::DisplayRole:
    case NameRole:
        return project.name;
    case DetailRole:
        return detailOf(project);
    case CurrentRole:
        return isCurrent;
    default:
        return {};
    }
}

QHash<int, QByteArray> ProjectListModel::roleNames() const
{
    return {{ProjectIdRole, "projectId"}, {NameRole, "name"}, {DetailRole, "detail"}, {CurrentRole, "isCurrent"}};
}

void ProjectListModel::refresh()
{
    std::vector<Row> wanted;
    if (m_engine) {
        for (const ProjectSummary &project : m_engine->projects()) {
            wanted.push_back({.project = project, .isCurrent = project.id == m_engine->currentProjectID()});
        }
    }
    sync(m_rows, std::move(wanted));
}

} // namespace larkspan
