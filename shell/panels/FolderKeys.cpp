#include "shell/panels/FolderKeys.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

std::optional<int> FolderKeys::target(int key, int modifiers, int row) const
{
    switch (key) {
    case Qt::Key_Down:
        return row + 1;
    case Qt::Key_Up: // with Alt it is the panel's, which goes up a folder
        return (modifiers & Qt::AltModifier) != 0 ? std::nullopt : std::optional(row - 1);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return m_entries->folderCount() - 1;
    case Qt::Key_PageDown:
        return std::max(row, 0) + m_pageRows;
    case Qt::Key_PageUp:
        return row - m_pageRows;
    default:
        return std::nullopt;
    }
}

bool FolderKeys::take(int key, int modifiers, const QString &text, bool isRepeat, int row)
{
    if (const auto wanted = target(key, modifiers, row)) {
        Q_EMIT selected(std::max(0, std::min(*wanted, m_entries->folderCount() - 1)));
        return true;
    }
    const bool opens = !isRepeat && (modifiers & ~Qt::KeypadModifier) == 0;
    switch (key) {
    case Qt::Key_Right:
        if (opens && row >= 0) {
            Q_EMIT entered(row);
        }
        return true;
    case Qt::Key_Left:
    case Qt::Key_Backspace:
        if (opens) {
            Q_EMIT upDue();
        }
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (opens && row >= 0) {
            Q_EMIT entered(row);
        } else if (opens) {
            Q_EMIT acceptDue();
        }
        return opens;
    default:
        return takeText(text, modifiers, row);
    }
}

bool FolderKeys::takeText(const QString &text, int modifiers, int row)
{
    if (text == "/"_L1 || text == "~"_L1) {
        Q_EMIT pathBegun(text);
        return true;
    }
    if (!LKTypeAhead::takes(text, modifiers)) {
        return false;
    }
    const QStringList names = m_entries->folderNames();
    const int found = m_typeAhead.find(QVariantList(names.begin(), names.end()), row, text);
    if (found >= 0) {
        Q_EMIT selected(found);
    }
    return true;
}

} // namespace larkspan
