#pragma once

#include <algorithm>
#include <unordered_set>
#include <vector>

#include <QtCore/QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineLink.h"

namespace larkspan {

// A list model whose rows follow a list that the engine makes anew on every change. Rows that stay keep their
// delegates: they are moved or told to have changed, never taken out and put back. A list that has nothing in common
// with the one before is shown as a new one.
// Classes made of it name it with its namespace: the tools of QML know it by that name alone.
class SyncedListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(larkspan::SortEngine *engine READ engine WRITE setEngine NOTIFY engineChanged REQUIRED)
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    using QAbstractListModel::QAbstractListModel;

    SortEngine *engine() const { return m_engine.get(); }
    void setEngine(SortEngine *engine);

Q_SIGNALS:
    void engineChanged();
    void countChanged();

protected:
    // Connects refresh to the signals of a new engine that matter.
    virtual void follow(SortEngine &engine) = 0;
    // Reads the rows again; there may be no engine.
    virtual void refresh() = 0;

    // Turns rows into wanted. Two rows are the same when their key() is; keys are unique within a list.
    template <typename Row>
    void sync(std::vector<Row> &rows, std::vector<Row> wanted)
    {
        using Key = std::decay_t<decltype(wanted.front().key())>;
        using Keys = std::unordered_set<Key, decltype([](const Key &key) { return qHash(key); })>;

        const auto before = rows.size();
        const Keys keep = keysOf<Keys>(wanted);
        const auto stays = [&keep](const Row &row) { return keep.contains(row.key()); };
        if (!rows.empty() && std::none_of(rows.begin(), rows.end(), stays)) {
            beginResetModel();
            rows = std::move(wanted);
            endResetModel();
            tellCount(before, rows.size());
            return;
        }
        for (auto end = rows.end(); end != rows.begin();) {
            if (stays(*std::prev(end))) {
                --end;
                continue;
            }
            const auto first = std::find_if(std::reverse_iterator(end), rows.rend(), stays).base();
            beginRemoveRows({}, static_cast<int>(first - rows.begin()), static_cast<int>(end - rows.begin()) - 1);
            end = rows.erase(first, end);
            endRemoveRows();
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
        tellCount(before, rows.size());
    }

    EngineLink m_engine;

private:
    void tellCount(std::size_t before, std::size_t after)
    {
        if (before != after) {
            Q_EMIT countChanged();
        }
    }

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
