#pragma once

#include <optional>

#include <QtQml/qqmlregistration.h>

#include "design/LKTypeAhead.h"
#include "shell/panels/FolderEntries.h"

namespace larkspan {

// Decides what a key does in the list of a file panel. Arrows, Home, End, the page keys and typed letters select a
// folder, Return and Right open it, Backspace and Left go up. Main thread.
class FolderKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::FolderEntries *entries MEMBER m_entries NOTIFY entriesChanged REQUIRED) // outlives this
    Q_PROPERTY(int pageRows MEMBER m_pageRows NOTIFY pageRowsChanged) // rows that a page key moves by

public:
    using QObject::QObject;

    // Takes a key, a Qt::Key with its modifiers and text. isRepeat: it comes from holding the key, which moves the
    // selection but opens nothing twice. row: the selected folder, -1 for none. Returns false for a key that means
    // nothing here.
    Q_INVOKABLE bool take(int key, int modifiers, const QString &text, bool isRepeat, int row);

Q_SIGNALS:
    void entriesChanged();
    void pageRowsChanged();
    // A folder is to be selected. Without a folder in the list the row is that of none.
    void selected(int row);
    // A folder is to be opened.
    void entered(int row);
    // The parent folder is to be opened.
    void upDue();
    // The open folder is to be chosen.
    void acceptDue();
    // The first character of a path was typed into the list.
    void pathBegun(const QString &text);

private:
    // Returns the row that a key moves to, possibly beyond the list; none for a key that doesn't move.
    [[nodiscard]] std::optional<int> target(int key, int modifiers, int row) const;
    bool takeText(const QString &text, int modifiers, int row);

    FolderEntries *m_entries = nullptr;
    int m_pageRows = 1;
    LKTypeAhead m_typeAhead{this};
};

} // namespace larkspan
