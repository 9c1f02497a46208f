#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

namespace larkspan {

// Finds an entry of a list by what is typed: letters in a row look for what begins with them all, one letter again and
// again goes through the labels that begin with it. A second without a letter begins a new search. Main thread.
class LKTypeAhead : public QObject
{
    Q_OBJECT

public:
    explicit LKTypeAhead(QObject *parent = nullptr);

    // Returns true for a key that is part of the search, by its text and modifiers. A space never is: it chooses.
    [[nodiscard]] static bool takes(const QString &text, int modifiers);
    // Returns the row to go to from current (-1: none), or -1. labels: a text for each row, null for a row that can't
    // be chosen.
    int find(const QVariantList &labels, int current, const QString &text);

private:
    QString m_typed;
    QTimer m_pause{this};
};

} // namespace larkspan
