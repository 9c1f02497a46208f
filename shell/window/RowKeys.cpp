#include "shell/window/RowKeys.h"

#include <algorithm>

namespace larkspan {

std::optional<int> RowKeys::step(int key) const
{
    switch (key) {
    case Qt::Key_Up:
        return -1;
    case Qt::Key_Down:
        return 1;
    case Qt::Key_Left:
        return m_rowsInColumn > 0 ? std::optional(-m_rowsInColumn) : std::nullopt;
    case Qt::Key_Right:
        return m_rowsInColumn > 0 ? std::optional(m_rowsInColumn) : std::nullopt;
    default:
        return std::nullopt;
    }
}

bool RowKeys::take(int key, int row)
{
    const auto rows = step(key);
    if (!rows) {
        return false;
    }
    if (const int target = std::min(row, m_rowCount) + *rows; target >= 0 && target < m_rowCount) {
        Q_EMIT walked(target);
    }
    return true;
}

} // namespace larkspan
