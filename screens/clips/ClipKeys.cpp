#include "screens/clips/ClipKeys.h"

namespace larkspan {

bool ClipKeys::take(int key, int modifiers, int row)
{
    if (row < 0 || (modifiers & (Qt::ControlModifier | Qt::AltModifier)) != 0) {
        return false;
    }
    const bool isMenuKey = key == Qt::Key_Menu || (key == Qt::Key_F10 && (modifiers & Qt::ShiftModifier) != 0);
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
        Q_EMIT openDue();
    } else if (key == Qt::Key_M) {
        Q_EMIT moveDue();
    } else if (key == Qt::Key_C && m_isReview) {
        Q_EMIT confirmDue();
    } else if (isMenuKey && !m_isReview) {
        Q_EMIT menuDue();
    } else {
        return false;
    }
    return true;
}

} // namespace larkspan
