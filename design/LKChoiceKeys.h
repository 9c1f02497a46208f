#pragma once

#include <QtQml/qqmlregistration.h>

#include "design/LKTypeAhead.h"

namespace larkspan {

// Decides where a key leads among the rows of a choice: a dropdown, a menu, segments. Arrows, Home, End and typed
// letters walk an open list; in a closed one they choose at once, or open it first. Main thread.
class LKChoiceKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // A text for each row, null for a row that can't be chosen.
    Q_PROPERTY(QVariantList labels MEMBER m_labels NOTIFY labelsChanged)
    // The first row that can be chosen, or -1.
    Q_PROPERTY(int first READ first NOTIFY labelsChanged)
    // True if keys choose in the closed list.
    Q_PROPERTY(bool choosesClosed MEMBER m_choosesClosed NOTIFY choosesClosedChanged)
    // True if the row after the last one is the first, as in a menu.
    Q_PROPERTY(bool wraps MEMBER m_wraps NOTIFY wrapsChanged)

public:
    using QObject::QObject;

    // Takes a key, a Qt::Key with its modifiers and text. row: the highlighted one of the open list, or the chosen one
    // of the closed list; -1 for none. Returns false for a key that means nothing here.
    Q_INVOKABLE bool take(int key, int modifiers, const QString &text, int row, bool isOpen);
    // Takes a key for choices beside each other, all of them visible: Left, Right, Home and End walk them. row: the one
    // with focus. isMirrored: the first one is on the right.
    Q_INVOKABLE bool takeAcross(int key, int row, bool isMirrored);
    // Returns the nearest row from there that can be chosen, or -1. step: 1 or -1. from: a row, or the one before the
    // first or after the last.
    [[nodiscard]] int next(int from, int step) const;
    [[nodiscard]] int first() const { return next(-1, 1); }

Q_SIGNALS:
    void labelsChanged();
    void choosesClosedChanged();
    void wrapsChanged();
    // The list is to be opened.
    void openDue();
    // A row of the open list is to be highlighted.
    void walked(int row);
    // A row is to be chosen, with the list closed.
    void chosen(int row);

private:
    [[nodiscard]] int rowCount() const { return static_cast<int>(m_labels.size()); }
    void reach(int target, int row, bool isOpen);

    QVariantList m_labels;
    bool m_choosesClosed = true;
    bool m_wraps = false;
    LKTypeAhead m_typeAhead{this};
};

} // namespace larkspan
