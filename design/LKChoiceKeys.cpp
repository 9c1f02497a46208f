#include "design/LKChoiceKeys.h"

namespace larkspan {

int LKChoiceKeys::next(int from, int step) const
{
    const int count = rowCount();
    int row = from;
    for (int tried = 0; tried < count; ++tried) {
        row = m_wraps ? (row + step + count) % count : row + step;
        if (row < 0 || row >= count) {
            return -1;
        }
        if (!m_labels[row].isNull()) {
            return row;
        }
    }
    return -1;
}

void LKChoiceKeys::reach(int target, int row, bool isOpen)
{
    if (target < 0) {
        return;
    }
    if (!isOpen && !m_choosesClosed) {
        Q_EMIT openDue();
    }
    if (isOpen || !m_choosesClosed) {
        Q_EMIT walked(target);
    } else if (target != row) {
        Q_EMIT chosen(target);
    }
}

bool LKChoiceKeys::take(int key, int modifiers, const QString &text, int row, bool isOpen)
{
    const bool isDown = key == Qt::Key_Down;
    const bool isArrow = isDown || key == Qt::Key_Up;
    if ((isDown && (modifiers & Qt::AltModifier) != 0) || (isArrow && !m_choosesClosed && !isOpen)) {
        Q_EMIT openDue();
    } else if (isDown) {
        reach(next(row, 1), row, isOpen);
    } else if (isArrow) {
        // Before any choice, up leads nowhere, or round to the last row.
        reach(row >= 0 ? next(row, -1) : m_wraps ? next(rowCount(), -1) : -1, row, isOpen);
    } else if (key == Qt::Key_Home) {
        reach(next(-1, 1), row, isOpen);
    } else if (key == Qt::Key_End) {
        reach(next(rowCount(), -1), row, isOpen);
    } else if (LKTypeAhead::takes(text, modifiers)) {
        reach(m_typeAhead.find(m_labels, row, text), row, isOpen);
    } else {
        return false;
    }
    return true;
}

bool LKChoiceKeys::takeAcross(int key, int row, bool isMirrored)
{
    const int toRight = isMirrored ? -1 : 1;
    switch (key) {
    case Qt::Key_Left:
        reach(next(row, -toRight), row, true);
        return true;
    case Qt::Key_Right:
        reach(next(row, toRight), row, true);
        return true;
    case Qt::Key_Home:
        reach(next(-1, 1), row, true);
        return true;
    case Qt::Key_End:
        reach(next(rowCount(), -1), row, true);
        return true;
    default:
        return false;
    }
}

} // namespace larkspan
