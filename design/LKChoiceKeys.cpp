#include "design/LKChoiceKeys.h"

namespace larkspan {

int LKChoiceKeys::next(int from, int step) const
{
    int row = from + step;
    while (row >= 0 && row < m_labels.size() && m_labels[row].isNull()) {
        row += step;
    }
    return row >= 0 && row < m_labels.size() ? row : -1;
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
        reach(row < 0 ? -1 : next(row, -1), row, isOpen);
    } else if (key == Qt::Key_Home) {
        reach(next(-1, 1), row, isOpen);
    } else if (key == Qt::Key_End) {
        reach(next(static_cast<int>(m_labels.size()), -1), row, isOpen);
    } else if (LKTypeAhead::takes(text, modifiers)) {
        reach(m_typeAhead.find(m_labels, row, text), row, isOpen);
    } else {
        return false;
    }
    return true;
}

} // namespace larkspan
