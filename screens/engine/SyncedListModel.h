#pragma once

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <vector>

#include <QtCore/QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineLink.h"

namespace larkspan {

// A list model whose rows follow a list that the engine makes anew on every change. Rows that stay keep their
// delegates: they are moved or told to have changed, never taken out and put back. A list that has nothing in common
// with the one before is shown as a new one.
// Subclasses spell the base as larkspan::SyncedListModel: qmltyperegistrar compares the text.
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
        const auto before = rows.size();
        // The keys stand outside the predicate: every algorithm copies the predicate that it is given.
        const auto kept = keysOf(wanted);
        const auto stays = [&kept](const Row &row) { return kept.contains(row.key()); };
        if (!rows.empty() && std::none_of(rows.begin(), rows.end(), stays)) {
            beginResetModel();
            rows = std::move(wanted);
            endResetModel();
        } else {
            removeOthers(rows, stays);
            takeOver(rows, std::move(wanted));
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

    template <typename Row>
    static auto keysOf(const std::vector<Row> &rows)
    {
        using Key = std::decay_t<decltype(rows.front().key())>;
        std::unordered_set<Key, decltype([](const Key &key) { return qHash(key); })> keys;
        for (const Row &row : rows) {
            keys.insert(row.key());
        }
        return keys;
    }

    // Removes the rows that don't stay, a run of them at a time, from the last to the first.
    template <typename Row, typename Stays>
    void removeOthers(std::vector<Row> &rows, const Stays &stays)
    {
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
    }

    // Brings rows, which are all wanted, into the order of wanted, and inserts the others a run of them at a time.
    template <typename Row>
    void takeOver(std::vector<Row> &rows, std::vector<Row> wanted)
    {
        const auto known = keysOf(rows);
        const auto isKnown = [&known](const Row &row) { return known.contains(row.key()); };
        for (auto want = wanted.begin(); want != wanted.end();) {
            const auto i = want - wanted.begin();
            if (const auto firstKnown = std::find_if(want, wanted.end(), isKnown); firstKnown != want) {
                beginInsertRows({}, static_cast<int>(i), static_cast<int>(firstKnown - wanted.begin()) - 1);
                rows.insert(rows.begin() + i, want, firstKnown);
                endInsertRows();
                want = firstKnown;
            } else {
                takeOverRow(rows, i, std::move(*want));
                ++want;
            }
        }
    }

    // Moves the row with the key of the one wanted up to place i, and tells its change if it differs.
    template <typename Row>
    void takeOverRow(std::vector<Row> &rows, std::ptrdiff_t i, Row wanted)
    {
        const auto at =
            std::find_if(rows.begin() + i, rows.end(), [&wanted](const Row &row) { return row.key() == wanted.key(); });
        if (const auto from = at - rows.begin(); from != i) {
            beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {}, static_cast<int>(i));
            std::rotate(rows.begin() + i, at, at + 1);
            endMoveRows();
        }
        if (Row &row = rows[static_cast<std::size_t>(i)]; !(row == wanted)) {
            row = std::move(wanted);
            const QModelIndex changed = index(static_cast<int>(i));
            Q_EMIT dataChanged(changed, changed);
        }
    }
};

} // namespace larkspan
