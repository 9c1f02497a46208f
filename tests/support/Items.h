#pragma once

#include <QtQuick/QQuickItem>

namespace larkspan::test {

// The first shown item below root that reads as the text: a control of that title or label, or a text of that content.
// Null when there is none; hidden ones don't count.
QQuickItem *findShown(QQuickItem *root, const QString &text);
// The first shown control below root that takes the keyboard and that assistive technology knows by this label.
QQuickItem *findLabelled(QQuickItem *root, const QString &label);
// The first item below root with this object name, hidden ones included.
QQuickItem *findNamed(QQuickItem *root, const QString &objectName);
// Where the middle of an item is, in the window.
QPoint middleOf(const QQuickItem *item);

} // namespace larkspan::test
