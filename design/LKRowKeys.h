#pragma once

#include <optional>

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// Decides which row of a list a key leads to. The rows fill one column after another, and no key leads past an end.
// Main thread.
class LKRowKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int rowCount MEMBER m_rowCount NOTIFY changed REQUIRED)
    // The height of a column, in rows. 0 for a single column, in which Left and Right mean nothing.
    Q_PROPERTY(int rowsInColumn MEMBER m_rowsInColumn NOTIFY changed)
    // The number of rows that a page key moves by. 0 if the page keys mean nothing.
    Q_PROPERTY(int rowsInPage MEMBER m_rowsInPage NOTIFY changed)
    // False for a view that handles the arrow keys itself.
    Q_PROPERTY(bool takesArrows MEMBER m_takesArrows NOTIFY changed)
    // True if Home leads to the first row and End to the last one.
    Q_PROPERTY(bool takesEnds MEMBER m_takesEnds NOTIFY changed)

public:
    using QObject::QObject;

    // Takes a Qt::Key. row: the one that has focus or is selected, -1 for none; the list may have become shorter than
    // that. Returns false for a key that means nothing here.
    Q_INVOKABLE bool take(int key, int row);

Q_SIGNALS:
    void changed();
    // This row, which is another one, is to get focus, or to be selected.
    void walked(int row);

private:
    // Both return the row that a key leads to, possibly beyond the list; none for a key that doesn't move.
    [[nodiscard]] std::optional<int> step(int key, int row) const;
    [[nodiscard]] std::optional<int> jump(int key, int row) const;

    int m_rowCount = 0;
    int m_rowsInColumn = 0;
    int m_rowsInPage = 0;
    bool m_takesArrows = true;
    bool m_takesEnds = false;
};

} // namespace larkspan
