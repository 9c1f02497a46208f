#pragma once

#include <QtQml/qqmlregistration.h>

#include "screens/engine/SyncedListModel.h"

namespace larkspan {

// The bins of the shoot as the side list shows them: the clips under review first, if there are any, then the bins in
// use in the engine's order. Rows are known by their bin.
class BinListModel : public larkspan::SyncedListModel
{
    Q_OBJECT
    QML_ELEMENT
    // The row that is on show, -1 if none is.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    // True while the clips under review are on show.
    Q_PROPERTY(bool reviewShown READ reviewShown NOTIFY reviewShownChanged)
    Q_PROPERTY(bool showsCounts READ showsCounts NOTIFY showsCountsChanged)

public:
    enum Role {
        BinRole = Qt::UserRole + 1, // what selectedBin is set to
        LabelRole,
        CountRole,
        IsReviewRole,
    };

    using SyncedListModel::SyncedListModel;

    int selectedRow() const { return m_selectedRow; }
    bool reviewShown() const { return m_reviewShown; }
    bool showsCounts() const;

    // Shows a row's clips; a row that isn't there changes nothing.
    Q_INVOKABLE void select(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void selectedRowChanged();
    void reviewShownChanged();
    void showsCountsChanged();

private:
    struct Row
    {
        QString bin;
        int count = 0;

        const QString &key() const { return bin; }
        friend bool operator==(const Row &, const Row &) = default;
    };

    void follow(SortEngine &engine) override;
    void refresh() override;
    void followSelection();

    std::vector<Row> m_rows;
    int m_selectedRow = -1;
    bool m_reviewShown = false;
};

} // namespace larkspan
