#pragma once

#include <optional>

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace larkspan {

// Decides which row of a list an arrow key leads to. The rows fill one column after another, and no arrow leads past an
// end. Main thread.
class RowKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int rowCount MEMBER m_rowCount NOTIFY changed REQUIRED)
    // The height of a column, in rows. 0 for a single column, in which Left and Right mean nothing.
    Q_PROPERTY(int rowsInColumn MEMBER m_rowsInColumn NOTIFY changed)

public:
    using QObject::QObject;

    // Takes a Qt::Key that was pressed in a row; the list may have become shorter than that. Returns false for a key
    // that means nothing here.
    Q_INVOKABLE bool take(int key, int row);

Q_SIGNALS:
    void changed();
    // This row is to get focus, or to be selected.
    void walked(int row);

private:
    // Returns the number of rows that a key moves by; none for a key that doesn't move.
    [[nodiscard]] std::optional<int> step(int key) const;

    int m_rowCount = 0;
    int m_rowsInColumn = 0;
};

} // namespace larkspan
