#pragma once

#include <QtCore/QPointer>
#include <QtQml/qqmlregistration.h>

#include "core/SortEngine.h"
#include "screens/SyncedListModel.h"

namespace larkspan {

// The bins of the shoot as the side list shows them: the clips under review first, if there are any, then the bins in
// use in the engine's order. Rows are known by their bin.
class BinListModel : public SyncedListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::SortEngine *engine READ engine WRITE setEngine NOTIFY engineChanged REQUIRED)
    // The row that is on show, -1 if none is.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    Q_PROPERTY(bool showsCounts READ showsCounts NOTIFY showsCountsChanged)

public:
    enum Role {
        BinRole = Qt::UserRole + 1, // what selectedBin is set to
        LabelRole,
        CountRole,
        IsReviewRole,
    };

    using SyncedListModel::SyncedListModel;

    SortEngine *engine() const { return m_engine; }
    void setEngine(SortEngine *engine);
    int selectedRow() const { return m_selectedRow; }
    bool showsCounts() const;

    // Shows a row's clips; a row that isn't there changes nothing.
    Q_INVOKABLE void select(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void engineChanged();
    void selectedRowChanged();
    void showsCountsChanged();

private:
    struct Row
    {
        QString bin;
        int count = 0;

        const QString &key() const { return bin; }
        friend bool operator==(const Row &, const Row &) = default;
    };

    void refresh();
    void followSelection();

    QPointer<SortEngine> m_engine;
    std::vector<Row> m_rows;
    int m_selectedRow = -1;
};

} // namespace larkspan
