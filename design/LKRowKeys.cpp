#include "design/LKRowKeys.h"

#include <algorithm>

namespace larkspan {

std::optional<int> LKRowKeys::step(int key, int row) const
{
    if (!m_takesArrows) {
        return std::nullopt;
    }
    switch (key) {
    case Qt::Key_Up: // from no row it leads to the first, as Down does
        return row < 0 ? 0 : row - 1;
    case Qt::Key_Down:
        return row + 1;
    case Qt::Key_Left:
        return m_rowsInColumn > 0 ? std::optional(row - m_rowsInColumn) : std::nullopt;
    case Qt::Key_Right:
        return m_rowsInColumn > 0 ? std::optional(row + m_rowsInColumn) : std::nullopt;
    default:
        return std::nullopt;
    }
}

std::optional<int> LKRowKeys::jump(int key, int row) const
{
    const int last = m_rowCount - 1;
    switch (key) {
    case Qt::Key_Home:
        return m_takesEnds ? std::optional(0) : std::nullopt;
    case Qt::Key_End:
        return m_takesEnds ? std::optional(last) : std::nullopt;
    case Qt::Key_PageUp:
        return m_rowsInPage > 0 ? std::optional(std::max(row - m_rowsInPage, 0)) : std::nullopt;
    case Qt::Key_PageDown:
        return m_rowsInPage > 0 ? std::optional(std::min(row + m_rowsInPage, last)) : std::nullopt;
    default:
        return std::nullopt;
    }
}

bool LKRowKeys::take(int key, int row)
{
    const int from = std::min(row, m_rowCount);
    auto target = step(key, from);
    if (!target) {
        target = jump(key, from);
    }
    if (!target) {
        return false;
    }
    if (*target >= 0 && *target < m_rowCount && *target != row) {
        Q_EMIT walked(*target);
    }
    return true;
}

} // namespace larkspan
