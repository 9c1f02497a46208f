#pragma once

#include "design/LKTypeAhead.h"

namespace larkspan {

// Decides where a key leads in a dropdown. Arrows, Home, End and typed letters walk its list while that is open; while
// it is closed they choose at once, or open it first. Main thread.
class LKChoiceKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    // A text for each row, null for a row that can't be chosen.
    Q_PROPERTY(QVariantList labels MEMBER m_labels NOTIFY labelsChanged)
    // True if keys choose in the closed list.
    Q_PROPERTY(bool choosesClosed MEMBER m_choosesClosed NOTIFY choosesClosedChanged)

public:
    using QObject::QObject;

    // Takes a key, a Qt::Key with its modifiers and text. row: the highlighted one of the open list, or the chosen one
    // of the closed list; -1 for none. Returns false for a key that means nothing here.
    Q_INVOKABLE bool take(int key, int modifiers, const QString &text, int row, bool isOpen);

Q_SIGNALS:
    void labelsChanged();
    void choosesClosedChanged();
    // The list is to be opened.
    void openDue();
    // A row of the open list is to be highlighted.
    void walked(int row);
    // A row is to be chosen, with the list closed.
    void chosen(int row);

private:
    // Returns the nearest row from there that can be chosen, or -1.
    [[nodiscard]] int next(int from, int step) const;
    void reach(int target, int row, bool isOpen);

    QVariantList m_labels;
    bool m_choosesClosed = true;
    LKTypeAhead m_typeAhead{this};
};

} // namespace larkspan
