#pragma once

#include <QtCore/QPointer>
#include <QtQml/qqmlregistration.h>

#include "core/SortEngine.h"
#include "screens/SyncedListModel.h"

namespace larkspan {

// The sorted shoots that can be reopened, the latest first. Rows are known by their project's id.
class ProjectListModel : public SyncedListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::SortEngine *engine READ engine WRITE setEngine NOTIFY engineChanged REQUIRED)
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    enum Role {
        ProjectIdRole = Qt::UserRole + 1,
        NameRole,
        DetailRole, // "74 clips · 12 bins · 3 to review"
    };

    using SyncedListModel::SyncedListModel;

    SortEngine *engine() const { return m_engine; }
    void setEngine(SortEngine *engine);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void engineChanged();
    void countChanged();

private:
    struct Row
    {
        ProjectSummary project;

        const QString &key() const { return project.id; }
        friend bool operator==(const Row &, const Row &) = default;
    };

    void refresh();

    QPointer<SortEngine> m_engine;
    std::vector<Row> m_rows;
};

} // namespace larkspan
