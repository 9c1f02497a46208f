#pragma once

#include <algorithm>
#include <unordered_set>
#include <vector>

#include <QtCore/QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// A list model whose rows follow a list that is made anew on every change. Rows that stay keep their delegates: they
// are moved or told to have changed, never taken out and put back.
class SyncedListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    using QAbstractListModel::QAbstractListModel;

protected:
    // Turns rows into wanted. Two rows are the same when their key() is; keys are unique within a list.
    template <typename Row>
    void sync(std::vector<Row> &rows, std::vector<Row> wanted)
    {
        using Key = std::decay_t<decltype(wanted.front().key())>;
        using Keys = std::unordered_set<Key, decltype([](const Key &key) { return qHash(key); })>;

        const Keys keep = keysOf<Keys>(wanted);
        for (auto i = static_cast<int>(rows.size()) - 1; i >= 0; --i) {
            if (!keep.contains(rows[static_cast<std::size_t>(i)].key())) {
                beginRemoveRows({}, i, i);
                rows.erase(rows.begin() + i);
                endRemoveRows();
            }
        }

        const Keys had = keysOf<Keys>(rows);
        for (auto want = wanted.begin(); want != wanted.end();) {
            const auto i = want - wanted.begin();
            const auto firstKnown =
                std::find_if(want, wanted.end(), [&had](const Row &row) { return had.contains(row.key()); });
            if (firstKnown != want) {
                beginInsertRows({}, static_cast<int>(i), static_cast<int>(firstKnown - wanted.begin()) - 1);
                rows.insert(rows.begin() + i, want, firstKnown);
                endInsertRows();
                want = firstKnown;
                continue;
            }
            const auto at = std::find_if(rows.begin() + i, rows.end(),
                                         [&want](const Row &row) { return row.key() == want->key(); });
            if (const auto from = at - rows.begin(); from != i) {
                beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {}, static_cast<int>(i));
                std::rotate(rows.begin() + i, at, at + 1);
                endMoveRows();
            }
            if (Row &row = rows[static_cast<std::size_t>(i)]; !(row == *want)) {
                row = std::move(*want);
                const QModelIndex changed = index(static_cast<int>(i));
                Q_EMIT dataChanged(changed, changed);
            }
            ++want;
        }
    }

private:
    template <typename Keys, typename Row>
    static Keys keysOf(const std::vector<Row> &rows)
    {
        Keys keys;
        for (const Row &row : rows) {
            keys.insert(row.key());
        }
        return keys;
    }
};

} // namespace larkspan
