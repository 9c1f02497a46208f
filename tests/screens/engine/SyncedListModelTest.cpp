#include "screens/engine/SyncedListModel.h"

#include <gtest/gtest.h>

#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

using namespace larkspan;

namespace {

// A key that counts its copies.
struct CountedKey
{
    explicit CountedKey(int value) : number(value) {}
    CountedKey(const CountedKey &other) : number(other.number) { ++copies; }
    CountedKey &operator=(const CountedKey &) = default;
    ~CountedKey() = default;

    bool operator==(const CountedKey &) const = default;
    friend std::size_t qHash(const CountedKey &key) { return static_cast<std::size_t>(key.number); }

    int number;
    inline static int copies = 0;
};

struct CountedRow
{
    const CountedKey &key() const { return name; }
    bool operator==(const CountedRow &) const = default;

    CountedKey name;
    bool marked = false;
};

std::vector<CountedRow> rowsUpTo(int count)
{
    std::vector<CountedRow> rows;
    for (int i = 0; i < count; ++i) {
        rows.push_back({.name = CountedKey(i)});
    }
    return rows;
}

class CountedListModel : public SyncedListModel
{
public:
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    QVariant data(const QModelIndex &, int) const override { return {}; }

    void show(std::vector<CountedRow> rows) { sync(m_rows, std::move(rows)); }

protected:
    void follow(SortEngine &) override {}
    void refresh() override {}

private:
    std::vector<CountedRow> m_rows;
};

} // namespace

TEST(SyncedListModel, AnEditOfALongListCopiesEachKeyAFewTimesOnly)
{
    constexpr int count = 1000;
    CountedListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
    model.show(rowsUpTo(count));
    auto edited = rowsUpTo(count);
    edited.erase(edited.begin() + 3);
    edited[500].marked = true;
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    CountedKey::copies = 0;
    model.show(edited);
    EXPECT_LT(CountedKey::copies, 10 * count);
    EXPECT_EQ(removed.count(), 1);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 500);
    EXPECT_EQ(model.rowCount(), count - 1);
}
