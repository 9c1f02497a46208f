#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/SyncedListModel.h"

namespace larkspan {

// The sorted shoots that can be reopened, the latest first. Rows are known by their project's id.
class ProjectListModel : public larkspan::SyncedListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    enum Role {
        ProjectIdRole = Qt::UserRole + 1,
        NameRole,
        DetailRole,  // "74 clips · 12 bins · 3 to review"
        CurrentRole, // whether it is the one on show
    };

    using SyncedListModel::SyncedListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Row
    {
        ProjectSummary project;
        bool isCurrent = false;

        const QString &key() const { return project.id; }
        friend bool operator==(const Row &, const Row &) = default;
    };

    void follow(SortEngine &engine) override;
    void refresh() override;

    std::vector<Row> m_rows;
};

} // namespace larkspan
