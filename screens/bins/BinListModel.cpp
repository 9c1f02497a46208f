#include "screens/bins/BinListModel.h"

#include "core/bins/RoomLabel.h"

namespace larkspan {

void BinListModel::follow(SortEngine &engine)
{
    connect(&engine, &SortEngine::clipsChanged, this, &BinListModel::refresh);
    connect(&engine, &SortEngine::selectedBinChanged, this, &BinListModel::followSelection);
    connect(&engine, &SortEngine::optionsChanged, this, &BinListModel::showsCountsChanged);
    Q_EMIT showsCountsChanged();
}

bool BinListModel::showsCounts() const
{
    return m_engine && m_engine->options().showClipCounts;
}

void BinListModel::select(int row)
{
    if (m_engine && row >= 0 && row < rowCount()) {
        m_engine->setSelectedBin(m_rows[static_cast<std::size_t>(row)].bin);
    }
}

int BinListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant BinListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    const bool isReview = row.bin == reviewKey();
    switch (role) {
    case BinRole:
        return row.bin;
    case Qt::DisplayRole:
    case LabelRole:
        return isReview ? reviewTitle() : row.bin;
    case CountRole:
        return row.count;
    case IsReviewRole:
        return isReview;
    default:
        return {};
    }
}

QHash<int, QByteArray> BinListModel::roleNames() const
{
    return {{BinRole, "bin"}, {LabelRole, "label"}, {CountRole, "count"}, {IsReviewRole, "isReview"}};
}

void BinListModel::refresh()
{
    std::vector<Row> wanted;
    if (m_engine) {
        if (const auto review = m_engine->clipsInBin(reviewKey()); !review.empty()) {
            wanted.push_back({.bin = reviewKey(), .count = static_cast<int>(review.size())});
        }
        for (const BinCount &bin : m_engine->binCounts()) {
            wanted.push_back({.bin = bin.bin, .count = bin.count});
        }
    }
    sync(m_rows, std::move(wanted));
    followSelection();
}

void BinListModel::followSelection()
{
    int row = -1;
    if (m_engine && m_engine->selectedBin()) {
        const auto at = std::find_if(m_rows.begin(), m_rows.end(),
                                     [this](const Row &candidate) { return candidate.bin == m_engine->selectedBin(); });
        row = at == m_rows.end() ? -1 : static_cast<int>(at - m_rows.begin());
    }
    if (m_selectedRow != row) {
        m_selectedRow = row;
        Q_EMIT selectedRowChanged();
    }
    const bool reviewShown = m_engine && m_engine->selectedBin() == reviewKey();
    if (m_reviewShown != reviewShown) {
        m_reviewShown = reviewShown;
        Q_EMIT reviewShownChanged();
    }
}

} // namespace larkspan
